#pragma once

#include "input/StreamCollector.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <optional>

namespace Korvane::qardatainterfaces {

/// Delivers the bytes of a file, or of a caller's stream, as they are.
class QARFileReaderWithoutTransform final : public QARFileReader {
public:
  QARFileReaderWithoutTransform(const FilePath& path, FileKind kind);
  explicit QARFileReaderWithoutTransform(opc::InputStream& in);

  const char* getTransformId() override;
  unsigned int read(void* buffer, unsigned int size) override;
  using QARFileReader::read;
  QARByteArray& readAll(QARMetaData& meta) override;
  using QARFileReader::readAll;

private:
  unsigned int readStream(unsigned char* to, unsigned int size);

  std::optional<StreamCollector> in_;
};

}  // namespace Korvane::qardatainterfaces
