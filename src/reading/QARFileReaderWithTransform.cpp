#include "QARFileReaderWithTransform.hpp"

#include "input/FilePath.hpp"
#include "input/InputFile.hpp"
#include "types/ByteArrayAccess.hpp"

#include <ku/filesystem/status.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/QARTransform.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace Korvane::qardatainterfaces {

QARFileReaderWithTransform::QARFileReaderWithTransform(const std::u16string& path, std::unique_ptr<InputFile> file,
                                                       QARTransform& transform)
    : QARFileReader(path, std::move(file)), transform_(transform) {}

QARFileReaderWithTransform::QARFileReaderWithTransform(opc::InputStream& in, QARTransform& transform)
    : in_(in), transform_(transform) {}

const char* QARFileReaderWithTransform::getTransformId() { return transform_.getId(); }

unsigned int QARFileReaderWithTransform::read(void* buffer, unsigned int size) {
  QARMetaData discarded;
  return read(buffer, size, discarded);
}

unsigned int QARFileReaderWithTransform::read(void* buffer, unsigned int size, QARMetaData& meta) {
  lastError_ = 0;
  if (!prepare(meta)) return failed;
  // After gathering the stream again, there may be less output than was already delivered.
  position_ = std::min(position_, output_.size());
  const unsigned long left = more_ ? output_.size() - position_ : 0;
  const auto count = static_cast<unsigned int>(std::min<unsigned long>({size, left, failed - 1}));
  std::copy_n(output_.begin() + position_, count, static_cast<unsigned char*>(buffer));
  position_ += count;
  more_ = position_ < output_.size();
  return count;
}

QARByteArray& QARFileReaderWithTransform::readAll() {
  if (!in_) return QARFileReader::readAll();
  QARMetaData discarded;
  if (gathering_ == Gathering::pending || gather()) runTransform(content_, discarded, transform_failed);
  return output_;
}

QARByteArray& QARFileReaderWithTransform::readAll(QARMetaData& meta) {
  lastError_ = 0;
  prepare(meta);
  return output_;
}

bool QARFileReaderWithTransform::prepare(QARMetaData& meta) {
  if (!prepared_) {
    prepared_ = isPathForTransform() ? transformPath(meta) : transformContent(meta);
    if (prepared_) ByteArrayAccess::release(content_);  // the transform is not run again
  }
  return prepared_;
}

bool QARFileReaderWithTransform::isPathForTransform() const {
  constexpr std::u16string_view ending = u"qvz";
  return path_.size() > ending.size() && std::u16string_view(path_).substr(path_.size() - ending.size()) == ending;
}

bool QARFileReaderWithTransform::transformPath(QARMetaData& meta) {
  if (ku::filesystem::status(FilePath(path_).native()).length == 0) return acceptEmptyInput();
  ku::i18n::codecvt_ustring_to_string encoder("UTF-8", true);
  return runTransform(QARByteArray(encoder.convert(path_.data(), path_.size())), meta, zero_length);
}

bool QARFileReaderWithTransform::transformContent(QARMetaData& meta) {
  if (in_) {
    if (gathering_ == Gathering::none) gather();
  } else {
    QARFileReader::readAll(meta);
  }
  if (lastError_ != 0) return false;
  return content_.size() == 0 ? acceptEmptyInput() : runTransform(content_, meta, transform_failed);
}

bool QARFileReaderWithTransform::gather() {
  const auto result = in_->gather(content_);
  if (result == StreamCollector::Result::stalled) lastError_ = transform_failed;
  if (result == StreamCollector::Result::gathered) gathering_ = Gathering::pending;
  return result == StreamCollector::Result::gathered;
}

bool QARFileReaderWithTransform::acceptEmptyInput() noexcept {
  if (!transform_.allowZeroLengthInputFiles()) {
    lastError_ = zero_length;
    return false;
  }
  ByteArrayAccess::release(output_);  // a failed attempt may have left bytes
  more_ = false;
  return true;
}

bool QARFileReaderWithTransform::runTransform(const QARByteArray& input, QARMetaData& meta, int errorWithoutOutput) {
  lastError_ = transform_failed;
  const bool done = transform_.transform(input, output_, meta);
  gathering_ = Gathering::offered;
  if (!done) {
    if (output_.size() == 0) lastError_ = errorWithoutOutput;
    return false;
  }
  if (output_.size() == 0 && !transform_.allowZeroLengthOutputFiles()) return false;
  more_ = output_.size() > 0;
  lastError_ = 0;
  return true;
}

}  // namespace Korvane::qardatainterfaces
