#pragma once

#include "input/StreamCollector.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <optional>

namespace Korvane::qardatainterfaces {

class QARTransform;

/// Delivers what a transform makes of the whole content of a file or of a caller's stream.
class QARFileReaderWithTransform final : public QARFileReader {
public:
  /// Requires: `transform` outlives the reader.
  QARFileReaderWithTransform(const FilePath& path, FileKind kind, QARTransform& transform);
  QARFileReaderWithTransform(opc::InputStream& in, QARTransform& transform);

  const char* getTransformId() override;
  unsigned int read(void* buffer, unsigned int size) override;
  unsigned int read(void* buffer, unsigned int size, QARMetaData& meta) override;
  QARByteArray& readAll() override;
  QARByteArray& readAll(QARMetaData& meta) override;

private:
  bool isPathForTransform() const;
  /// Runs the transform unless that has succeeded before; tells whether there is output to deliver.
  bool prepare(QARMetaData& meta);
  bool transformContent(QARMetaData& meta);
  bool transformPath(QARMetaData& meta);
  bool acceptEmptyInput() noexcept;
  /// `refusal` is the error if the transform fails without output.
  bool runTransform(const QARByteArray& input, QARMetaData& meta, int refusal);
  bool gather();

  std::optional<StreamCollector> in_;
  QARTransform& transform_;
  unsigned long position_ = 0;
  bool prepared_ = false;
  bool gathered_ = false;
  bool untransformed_ = false;  // gathered, and no transform of it has returned yet
  QARByteArray output_;
};

}  // namespace Korvane::qardatainterfaces
