#include "openHandle.hpp"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

int open(const char* path, int flags) noexcept {
  // O_NOCTTY: a terminal must not become the controlling terminal of the process.
  return uninterrupted([=] { return ::open(path, flags | O_CLOEXEC | O_NOCTTY); });
}

// A socket cannot be opened by a path, not even by /dev/stdin.
int openStandardInput(const char* path) noexcept {
  struct stat asked {};
  struct stat input {};
  const bool same = ::stat(path, &asked) == 0 && ::fstat(STDIN_FILENO, &input) == 0 && S_ISSOCK(asked.st_mode) &&
                    asked.st_dev == input.st_dev && asked.st_ino == input.st_ino;
  if (same) return ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
  errno = ENXIO;
  return -1;
}

// Waits until another process gives up its lease. Checks first that it is a lease on a regular file: `path` may
// meanwhile name a FIFO, whose opening would block.
int openLeased(const char* path) noexcept {
  const int place = open(path, O_PATH | O_NOFOLLOW);
  if (place < 0) return -1;
  struct stat found {};
  int handle = -1;
  int error = EWOULDBLOCK;
  if (::fstat(place, &found) == 0 && S_ISREG(found.st_mode)) {
    char same[32];
    static_cast<void>(std::snprintf(same, sizeof same, "/proc/self/fd/%d", place));
    handle = open(same, O_RDONLY);
    error = errno == ENOENT ? EWOULDBLOCK : errno;  // waiting is impossible without /proc
  }
  ::close(place);
  errno = error;
  return handle;
}

}  // namespace

int openAny(const char* path) noexcept {
  const int handle = open(path, O_RDONLY);
  return handle < 0 && errno == ENXIO ? openStandardInput(path) : handle;
}

int openRegular(const char* path) noexcept {
  const int handle = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
  return handle < 0 && errno == EWOULDBLOCK ? openLeased(path) : handle;
}

}  // namespace Korvane::qardatainterfaces
