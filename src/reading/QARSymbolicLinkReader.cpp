#include "QARSymbolicLinkReader.hpp"

#include "input/FilePath.hpp"
#include "input/InputFile.hpp"
#include "types/ByteBuffer.hpp"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

// Returns 0, or the error code if it fails and leaves `content` unchanged.
int readLink(const std::string& path, QARByteArray& content) {
  struct stat found {};
  if (::lstat(path.c_str(), &found) != 0) return errno;
  if (!S_ISLNK(found.st_mode)) return EINVAL;  // a file that replaced the link may have any size
  const auto size = static_cast<unsigned long>(found.st_size);
  ByteBuffer target(size);
  const auto count = ::readlink(path.c_str(), reinterpret_cast<char*>(target.data()), size);
  if (count < 0) return errno;
  target.moveTo(content, static_cast<unsigned long>(count));
  return 0;
}

}  // namespace

QARSymbolicLinkReader::QARSymbolicLinkReader(const std::u16string& path) : linkPath_(path) {}

const char* QARSymbolicLinkReader::getTransformId() { return ""; }

unsigned int QARSymbolicLinkReader::read(void* buffer, unsigned int size) {
  QARMetaData discarded;
  const auto& target = readAll(discarded);
  const auto count = static_cast<unsigned int>(std::min<unsigned long>(size, target.size()));
  std::copy_n(target.begin(), count, static_cast<unsigned char*>(buffer));
  return count;
}

QARByteArray& QARSymbolicLinkReader::readAll(QARMetaData&) {
  const int error = readLink(FilePath(linkPath_).native(), content_);
  // The file object exists only to hold the error of `readError()`.
  file_ = error == 0 ? nullptr : std::make_unique<InputFile>(error);
  return content_;
}

int QARSymbolicLinkReader::ready() { return 0; }

}  // namespace Korvane::qardatainterfaces
