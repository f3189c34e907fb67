#include <qardatainterfaces/QARFileReader.hpp>

#include "input/FilePath.hpp"
#include "input/InputFile.hpp"

#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

namespace Korvane::qardatainterfaces {

QARFileReader::QARFileReader() = default;

QARFileReader::QARFileReader(const std::u16string& path) : QARFileReader(FilePath(path), FileKind::any) {}

QARFileReader::QARFileReader(const FilePath& path, FileKind kind)
    : path_(path.given()), stream_(std::make_unique<InputFile>(path, kind)) {
  using qar::qardatainterfaces::QARDATAINTERFACES_FILE_OPEN_FAILED;
  if (!stream_->good())
    throw rtxi18nutil::DeployedException(
        QARDATAINTERFACES_FILE_OPEN_FAILED(ku::i18n::to_string(path_), "file is closed.failbit is set."));
}

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
  if (stream_ && stream_->good()) stream_->readWhole(content_);
  return content_;
}

bool QARFileReader::more() { return more_; }

int QARFileReader::lastError() { return lastError_; }

bool QARFileReader::readSucceeded() { return lastError_ == 0; }

int QARFileReader::ready() {
  if (!stream_) return not_open;
  return stream_->good() ? 0 : not_good;
}

}  // namespace Korvane::qardatainterfaces
