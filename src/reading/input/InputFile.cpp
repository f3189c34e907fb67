#include "InputFile.hpp"

#include "FilePath.hpp"
#include "openHandle.hpp"
#include "types/ByteArrayAccess.hpp"

#include <ku/i18n/codecvt.hpp>

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

constexpr std::uint64_t buffer_size = 64 * 1024;
constexpr std::uint64_t unknown_size = 16 * 1024;  // more than one read of a file without a size (/proc) returns
constexpr std::uint64_t most_at_once = 1U << 30;   // the kernel's limit is nearly twice as much

int open(const FilePath& path, FileKind kind) {
  try {
    const char* const native = path.native().c_str();
    return kind == FileKind::regular ? openRegular(native) : openAny(native);
  } catch (const ku::i18n::CvtExceptionBase&) {
    errno = EILSEQ;
    return -1;
  }
}

// The error code if a file of this mode must not be read, else 0.
int refusal(mode_t mode, FileKind kind) noexcept {
  if (S_ISDIR(mode)) return EISDIR;
  return kind == FileKind::regular && !S_ISREG(mode) ? EBADFD : 0;
}

}  // namespace

InputFile::InputFile(const FilePath& path, FileKind kind) : handle_(open(path, kind)) {
  struct stat found {};
  if (!isOpen() || ::fstat(handle_, &found) != 0)
    error_ = errno;
  else
    error_ = refusal(found.st_mode, kind);
  if (error_ == 0) {
    regular_ = S_ISREG(found.st_mode);
    size_ = static_cast<std::uint64_t>(found.st_size);
  } else {
    if (isOpen()) ::close(handle_);
    handle_ = -1;
    state_ = std::ios_base::failbit;
  }
}

InputFile::~InputFile() {
  if (isOpen()) ::close(handle_);
}

std::uint32_t InputFile::readOn(unsigned char* to, std::uint32_t size) noexcept {
  if (!good()) return 0;
  auto placed = takeBuffered(to, static_cast<std::uint32_t>(std::min<std::uint64_t>(size, filled_ - next_)));
  while (placed < size && good()) {
    const std::uint32_t wanted = size - placed;
    if (wanted >= buffer_size || !hasBuffer()) {
      placed += static_cast<std::uint32_t>(readOnce(to + placed, wanted));
    } else {
      filled_ = readOnce(buffer_.data(), buffer_size);
      next_ = 0;
      placed += takeBuffered(to + placed, static_cast<std::uint32_t>(std::min<std::uint64_t>(wanted, filled_)));
    }
  }
  return placed;
}

// If there is no memory for the buffer, reads go without look-ahead; nothing else changes.
bool InputFile::hasBuffer() noexcept { return buffer_.capacity() >= buffer_size || buffer_.tryResize(buffer_size); }

std::uint64_t InputFile::readOnce(unsigned char* to, std::uint64_t size) noexcept {
  const auto result = waiting([=, this] { return ::read(handle_, to, size); });
  if (result == 0) state_ = std::ios_base::eofbit | std::ios_base::failbit;
  if (result < 0) fail();
  return result > 0 ? static_cast<std::uint64_t>(result) : 0;
}

template <class Call>
ssize_t InputFile::waiting(Call call) noexcept {
  auto result = uninterrupted(call);
  while (result < 0 && errno == EAGAIN && waitForData()) result = uninterrupted(call);
  return result;
}

bool InputFile::waitForData() const noexcept {
  // Few regular files can block; /proc/kmsg is one. They were opened with O_NONBLOCK only so that opening cannot
  // block.
  if (regular_) {
    const int flags = ::fcntl(handle_, F_GETFL);
    if (flags >= 0 && (flags & O_NONBLOCK) != 0 && ::fcntl(handle_, F_SETFL, flags & ~O_NONBLOCK) == 0) return true;
    errno = EAGAIN;
    return false;
  }
  // A socket may be shared with another program, which may have made it non-blocking.
  pollfd waited{handle_, POLLIN, 0};
  const bool done = uninterrupted([&] { return ::poll(&waited, 1, -1); }) > 0;
  if (!done) errno = EAGAIN;
  return done;
}

void InputFile::readWhole(QARByteArray& content) {
  if (endLookAhead() && (regular_ || askDeviceSize())) readFromStart(content);
  if (error_ != ESPIPE) return;
  error_ = 0;
  state_ = std::ios_base::goodbit;
  readRest(content);
}

bool InputFile::endLookAhead() noexcept {
  const auto ahead = static_cast<off_t>(filled_ - next_);
  if (ahead > 0 && ::lseek(handle_, -ahead, SEEK_CUR) < 0) return fail();
  next_ = 0;
  filled_ = 0;
  return true;
}

bool InputFile::askDeviceSize() noexcept {
  const auto place = ::lseek(handle_, 0, SEEK_CUR);
  if (place < 0) return fail();
  const auto end = ::lseek(handle_, 0, SEEK_END);
  if (end < 0 || ::lseek(handle_, place, SEEK_SET) < 0) return fail();
  size_ = static_cast<std::uint64_t>(end);
  return true;
}

// With room for one more byte, the read that fetches the last byte of a file also detects its end. A file that
// reports no size gets a larger room, since some of these files deliver their content only to the first read.
std::uint64_t InputFile::firstRoom() const noexcept {
  if (!regular_) return size_;
  return size_ > 0 ? size_ + 1 : unknown_size;
}

ByteBuffer InputFile::makeRoom() {
  try {
    return ByteBuffer(firstRoom());
  } catch (const std::bad_alloc&) {
    struct stat found {};
    const bool shrank =
        regular_ && ::fstat(handle_, &found) == 0 && static_cast<std::uint64_t>(found.st_size) < size_;
    if (!shrank) throw;
    size_ = static_cast<std::uint64_t>(found.st_size);
    return ByteBuffer(firstRoom());
  }
}

void InputFile::readFromStart(QARByteArray& content) {
  auto bytes = makeRoom();
  std::uint64_t count = 0;
  while (fillFromStart(bytes, count) && count == bytes.capacity() && regular_)
    bytes.resize(std::max(2 * count, unknown_size));  // the file has grown, or does not report its size
  if (good()) bytes.moveTo(content, count);
}

// Continues after the first `count` bytes, until `bytes` is full or the end of the file is reached.
bool InputFile::fillFromStart(ByteBuffer& bytes, std::uint64_t& count) noexcept {
  while (count < bytes.capacity()) {
    const auto wanted = std::min(bytes.capacity() - count, most_at_once);
    const auto result =
        waiting([&] { return ::pread(handle_, bytes.data() + count, wanted, static_cast<off_t>(count)); });
    if (result < 0) return fail();
    if (result == 0) break;
    count += static_cast<std::uint64_t>(result);
    // A short read of a file that reports its size means the end; this saves another call.
    if (size_ > 0 && count >= size_ && static_cast<std::uint64_t>(result) < wanted) break;
  }
  return true;
}

// All bytes stay in the look-ahead buffer until they have become content, since they cannot be read again.
void InputFile::readRest(QARByteArray& content) {
  while (good()) {
    if (filled_ == buffer_.capacity()) buffer_.resize(std::max(2 * filled_, buffer_size));
    filled_ += readOnce(buffer_.data() + filled_, std::min(buffer_.capacity() - filled_, most_at_once));
  }
  if (!atEnd()) return;
  // If there is no memory for the content, the state stays good and chunk reads deliver the look-ahead.
  const auto end = state_;
  state_ = std::ios_base::goodbit;
  QARByteArray rest(buffer_.data() + next_, filled_ - next_);
  ByteArrayAccess::swap(content, rest);
  buffer_ = ByteBuffer();
  next_ = 0;
  filled_ = 0;
  state_ = end;
}

bool InputFile::fail() noexcept {
  error_ = errno;
  state_ = std::ios_base::badbit;
  return false;
}

}  // namespace Korvane::qardatainterfaces
