#pragma once

#include "input/StreamCollector.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

/// Delivers the bytes of a file or of a caller's stream unchanged.
class QARFileReaderWithoutTransform final : public QARFileReader {
public:
  QARFileReaderWithoutTransform(const std::u16string& path, std::unique_ptr<InputFile> file);
  explicit QARFileReaderWithoutTransform(opc::InputStream& in);

  const char* getTransformId() override;
  unsigned int read(void* buffer, unsigned int size) override;
  using QARFileReader::read;
  QARByteArray& readAll(QARMetaData& meta) override;
  using QARFileReader::readAll;

private:
  unsigned int readStream(unsigned char* to, unsigned int size);

  std::optional<StreamCollector> in_;
  bool gathered_ = false;  // the stream had data, which is now the content
};

}  // namespace Korvane::qardatainterfaces
