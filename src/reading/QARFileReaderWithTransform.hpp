#pragma once

#include "input/StreamCollector.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

class QARTransform;

/// Delivers what a transform makes of the whole content of a file or of a caller's stream.
class QARFileReaderWithTransform final : public QARFileReader {
public:
  /// Requires: `transform` outlives the reader.
  QARFileReaderWithTransform(const std::u16string& path, std::unique_ptr<InputFile> file, QARTransform& transform);
  QARFileReaderWithTransform(opc::InputStream& in, QARTransform& transform);

  const char* getTransformId() override;
  unsigned int read(void* buffer, unsigned int size) override;
  unsigned int read(void* buffer, unsigned int size, QARMetaData& meta) override;
  QARByteArray& readAll() override;
  QARByteArray& readAll(QARMetaData& meta) override;

private:
  /// What has become of a caller's stream.
  enum class Gathering {
    none,     // nothing has been taken from the stream
    pending,  // gathered into the content; no transform of it has returned
    offered,  // a transform of the content has returned; the next whole read gathers again
  };

  bool isPathForTransform() const;
  /// Runs the transform unless that has succeeded before; tells whether there is output to deliver.
  bool prepare(QARMetaData& meta);
  bool transformContent(QARMetaData& meta);
  bool transformPath(QARMetaData& meta);
  bool acceptEmptyInput() noexcept;
  /// `refusal` is the error if the transform fails without output.
  bool runTransform(const QARByteArray& input, QARMetaData& meta, int refusal);
  /// Whether there is content that waits for its transform.
  bool gather();

  std::optional<StreamCollector> in_;
  QARTransform& transform_;
  unsigned long position_ = 0;
  bool prepared_ = false;  // the transform is not run again, but by `readAll()` on a stream
  Gathering gathering_ = Gathering::none;
  QARByteArray output_;
};

}  // namespace Korvane::qardatainterfaces
