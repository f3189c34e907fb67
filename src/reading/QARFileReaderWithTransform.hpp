#pragma once

#include "input/StreamCollector.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

class QARTransform;

/// Delivers the output of a transform for the whole content of a file or of a caller's stream.
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
  /// The state of a caller's stream.
  enum class Gathering {
    none,     // nothing has been taken from the stream
    pending,  // gathered into the content; the transform has not yet returned for it
    offered,  // the transform has returned for the content; the next whole read gathers again
  };

  bool isPathForTransform() const;
  /// Runs the transform unless it has already succeeded. Returns whether there is output to deliver.
  bool prepare(QARMetaData& meta);
  bool transformContent(QARMetaData& meta);
  bool transformPath(QARMetaData& meta);
  bool acceptEmptyInput() noexcept;
  /// `errorWithoutOutput` is the last error if the transform fails and leaves no output.
  bool runTransform(const QARByteArray& input, QARMetaData& meta, int errorWithoutOutput);
  /// Gathers the stream. Returns whether there is content to transform.
  bool gather();

  std::optional<StreamCollector> in_;
  QARTransform& transform_;
  unsigned long position_ = 0;
  bool prepared_ = false;  // only `readAll()` on a stream runs the transform again
  Gathering gathering_ = Gathering::none;
  QARByteArray output_;
};

}  // namespace Korvane::qardatainterfaces
