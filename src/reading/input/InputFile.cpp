#include "InputFile.hpp"

#include "FilePath.hpp"
#include "types/ByteBuffer.hpp"

#include <ku/i18n/codecvt.hpp>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

constexpr std::uint32_t buffer_size = 64 * 1024;
constexpr std::uint64_t least_growth = 4096;
constexpr std::uint64_t most_at_once = 1U << 30;  // the kernel takes nearly twice as much

template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

int open(const FilePath& path, FileKind kind) {
  // Not to wait for the writer of a FIFO, nor to become a terminal's process, if the file was swapped.
  constexpr int wary = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  try {
    const char* const native = path.native().c_str();
    return uninterrupted(
        [&] { return ::open(native, O_RDONLY | O_CLOEXEC | (kind == FileKind::regular ? wary : 0)); });
  } catch (const ku::i18n::CvtExceptionBase&) {
    return -1;
  }
}

}  // namespace

InputFile::InputFile(const FilePath& path, FileKind kind) : handle_(open(path, kind)) {
  struct stat found {};
  if (isOpen() && ::fstat(handle_, &found) == 0) {
    regular_ = S_ISREG(found.st_mode);
    size_ = static_cast<std::uint64_t>(found.st_size);
    if (kind == FileKind::regular ? regular_ : !S_ISDIR(found.st_mode)) return;
  }
  if (isOpen()) ::close(std::exchange(handle_, -1));
  state_ = std::ios_base::failbit;
}

InputFile::~InputFile() {
  if (isOpen()) ::close(handle_);
}

std::uint32_t InputFile::readOn(unsigned char* to, std::uint32_t size) {
  if (!good()) return 0;
  std::uint32_t placed = takeBuffered(to, std::min(size, filled_ - next_));
  while (placed < size && good()) {
    const std::uint32_t wanted = size - placed;
    std::uint32_t count = 0;
    if (wanted >= buffer_size) {
      if (readOnce(to + placed, wanted, count)) placed += count;
    } else {
      if (!buffer_) buffer_ = std::make_unique_for_overwrite<unsigned char[]>(buffer_size);
      if (readOnce(buffer_.get(), buffer_size, count)) {
        next_ = 0;
        filled_ = count;
        placed += takeBuffered(to + placed, std::min(wanted, filled_));
      }
    }
  }
  return placed;
}

bool InputFile::readOnce(unsigned char* to, std::uint32_t size, std::uint32_t& count) noexcept {
  const auto result = uninterrupted([&] { return ::read(handle_, to, size); });
  if (result == 0) state_ = std::ios_base::eofbit | std::ios_base::failbit;
  if (result < 0) state_ = std::ios_base::badbit;
  if (result > 0) count = static_cast<std::uint32_t>(result);
  return result > 0;
}

void InputFile::readWhole(QARByteArray& content) {
  if (!regular_ && !askDeviceSize()) return;
  // With room for one byte more, the read that fetches the last byte of a file sees its end as well.
  ByteBuffer bytes(regular_ ? size_ + 1 : size_);
  std::uint64_t count = 0;
  while (fillFromStart(bytes, count) && count == bytes.capacity() && regular_)
    bytes.resize(std::max(2 * count, least_growth));  // it has grown, or is one of those that do not tell their size
  if (!good()) return;
  bytes.moveTo(content, count);
}

bool InputFile::askDeviceSize() noexcept {
  const auto place = ::lseek(handle_, 0, SEEK_CUR);
  const auto end = ::lseek(handle_, 0, SEEK_END);
  if (place < 0 || end < 0 || ::lseek(handle_, place, SEEK_SET) < 0) state_ = std::ios_base::badbit;
  size_ = static_cast<std::uint64_t>(end);
  return good();
}

bool InputFile::fillFromStart(ByteBuffer& bytes, std::uint64_t& count) noexcept {
  while (count < bytes.capacity()) {
    const auto wanted = std::min(bytes.capacity() - count, most_at_once);
    const auto result =
        uninterrupted([&] { return ::pread(handle_, bytes.data() + count, wanted, static_cast<off_t>(count)); });
    if (result < 0) state_ = std::ios_base::badbit;
    if (result <= 0) break;
    count += static_cast<std::uint64_t>(result);
    // The end, seen without another call; of a file that tells its size, where a short count means nothing else.
    if (size_ > 0 && count >= size_ && static_cast<std::uint64_t>(result) < wanted) break;
  }
  return good();
}

}  // namespace Korvane::qardatainterfaces
