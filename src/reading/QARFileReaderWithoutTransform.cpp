#include "QARFileReaderWithoutTransform.hpp"

#include "input/InputFile.hpp"

#include <opc/InputStream.hpp>

#include <algorithm>
#include <utility>

namespace Korvane::qardatainterfaces {

QARFileReaderWithoutTransform::QARFileReaderWithoutTransform(const std::u16string& path,
                                                             std::unique_ptr<InputFile> file)
    : QARFileReader(path, std::move(file)) {
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
  const auto count = file_->read(to, size);
  if (count > 0 && count == size) return count;  // spares small chunks the checks below
  if (file_->atEnd()) more_ = false;
  return file_->good() || file_->atEnd() ? count : failed;
}

unsigned int QARFileReaderWithoutTransform::readStream(unsigned char* to, unsigned int size) {
  bool isLast = false;
  const auto count = static_cast<unsigned int>(in_->read(to, size, isLast));
  if (isLast) more_ = false;
  return count;
}

QARByteArray& QARFileReaderWithoutTransform::readAll(QARMetaData& meta) {
  QARFileReader::readAll(meta);
  if (!in_ || gathered_ || in_->exhausted()) return content_;
  const auto result = in_->gather(content_);
  gathered_ = result == StreamCollector::Result::gathered;
  if (result == StreamCollector::Result::stalled)
    lastError_ = transform_failed;
  else
    more_ = false;
  return content_;
}

}  // namespace Korvane::qardatainterfaces
