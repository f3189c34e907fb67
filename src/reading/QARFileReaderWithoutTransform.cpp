#include "QARFileReaderWithoutTransform.hpp"

#include "input/InputFile.hpp"

#include <opc/InputStream.hpp>

#include <algorithm>
#include <cstdint>

namespace Korvane::qardatainterfaces {

QARFileReaderWithoutTransform::QARFileReaderWithoutTransform(const FilePath& path, FileKind kind)
    : QARFileReader(path, kind) {
  more_ = true;
}

QARFileReaderWithoutTransform::QARFileReaderWithoutTransform(opc::InputStream& in) : in_(in) {
  more_ = !in.exhausted();
}

const char* QARFileReaderWithoutTransform::getTransformId() { return ""; }

unsigned int QARFileReaderWithoutTransform::read(void* buffer, unsigned int size) {
  lastError_ = 0;
  auto* const to = static_cast<unsigned char*>(buffer);
  size = std::min(size, failed - 1);
  if (in_) return readStream(to, size);
  const auto count = stream_->read(to, size);
  if (count > 0 && count == size) return count;
  if (stream_->atEnd()) more_ = false;
  return stream_->good() || stream_->atEnd() ? count : failed;
}

unsigned int QARFileReaderWithoutTransform::readStream(unsigned char* to, unsigned int size) {
  const auto count = static_cast<unsigned int>(in_->read(to, size));
  if (in_->exhausted()) more_ = false;
  return count;
}

QARByteArray& QARFileReaderWithoutTransform::readAll(QARMetaData& meta) {
  QARFileReader::readAll(meta);
  if (in_ && more_) {
    if (in_->gather(content_) == StreamCollector::Result::stalled)
      lastError_ = transform_failed;
    else
      more_ = false;
  }
  return content_;
}

}  // namespace Korvane::qardatainterfaces
