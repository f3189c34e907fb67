#include <qardatainterfaces/QARFileReader.hpp>

#include "input/FilePath.hpp"
#include "input/InputFile.hpp"
#include "openFile.hpp"

#include <utility>

namespace Korvane::qardatainterfaces {

QARFileReader::QARFileReader() = default;

QARFileReader::QARFileReader(const std::u16string& path)
    : QARFileReader(path, openFile(FilePath(path), FileKind::any)) {}

QARFileReader::QARFileReader(const std::u16string& path, std::unique_ptr<InputFile> file)
    : path_(path), file_(std::move(file)) {}

QARFileReader::~QARFileReader() = default;

unsigned int QARFileReader::read(void* buffer, unsigned int size, QARMetaData&) {
  lastError_ = 0;
  return read(buffer, size);
}

QARByteArray& QARFileReader::readAll() {
  QARMetaData discarded;
  lastError_ = 0;
  return readAll(discarded);
}

QARByteArray& QARFileReader::readAll(QARMetaData&) {
  lastError_ = 0;
  if (file_ && file_->good()) file_->readWhole(content_);
  return content_;
}

bool QARFileReader::more() { return more_; }

int QARFileReader::lastError() { return lastError_; }

bool QARFileReader::readSucceeded() { return lastError_ == 0; }

int QARFileReader::ready() {
  if (!file_) return not_open;
  return file_->good() ? 0 : not_good;
}

std::error_code QARFileReader::readError() const noexcept { return file_ ? file_->error() : std::error_code(); }

}  // namespace Korvane::qardatainterfaces
