#include "QARSymbolicLinkReader.hpp"

#include "input/FilePath.hpp"
#include "types/ByteBuffer.hpp"

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

void readLink(const std::string& path, QARByteArray& content) {
  struct stat found {};
  // What took the place of the link may be of any size.
  if (::lstat(path.c_str(), &found) != 0 || !S_ISLNK(found.st_mode)) return;
  const auto size = static_cast<unsigned long>(found.st_size);
  ByteBuffer target(size);
  const auto count = ::readlink(path.c_str(), reinterpret_cast<char*>(target.data()), size);
  if (count >= 0) target.moveTo(content, static_cast<unsigned long>(count));
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
  readLink(FilePath(linkPath_).native(), content_);
  return content_;
}

int QARSymbolicLinkReader::ready() { return 0; }

}  // namespace Korvane::qardatainterfaces
