#pragma once

#include "types/ByteBuffer.hpp"

#include <qardatainterfaces/QARByteArray.hpp>

#include <algorithm>
#include <cstdint>
#include <ios>
#include <system_error>

namespace Korvane::qardatainterfaces {

class FilePath;

/// What may be opened: anything but a directory, or only a regular file and no symbolic link.
enum class FileKind : bool { any, regular };

/// An open file with the reading behaviour and the state bits of a standard binary input stream.
class InputFile {
public:
  /// Does not throw if the file cannot be opened: only the failure bit is then set, and `error()` has the reason.
  /// Waits while another process has a lease on the file.
  InputFile(const FilePath& path, FileKind kind);
  /// Not open, with this error.
  explicit InputFile(int error) noexcept : state_(std::ios_base::failbit), error_(error) {}
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool good() const noexcept { return state_ == std::ios_base::goodbit; }
  bool atEnd() const noexcept { return (state_ & std::ios_base::eofbit) != 0; }
  /// Why it could not be opened or read; empty if there was no error.
  std::error_code error() const noexcept { return {error_, std::system_category()}; }

  /// Reads the next bytes, up to `size`. If it returns fewer, the end was reached or the file could not be read; the
  /// state tells which.
  std::uint32_t read(unsigned char* to, std::uint32_t size) noexcept {
    return good() && size <= filled_ - next_ ? takeBuffered(to, size) : readOn(to, size);
  }

  /// Makes `content` the whole file as it is now, without changing the position of `read`. If the file is not
  /// seekable, `content` is the rest of it, and the state becomes end of file. If the file cannot be read, `content`
  /// is unchanged and the state is no longer good. If this throws, nothing is lost: `read` continues at the same
  /// position.
  void readWhole(QARByteArray& content);

private:
  bool isOpen() const noexcept { return handle_ >= 0; }
  // Inline, since a function call would take most of the time of a small chunk.
  std::uint32_t takeBuffered(unsigned char* to, std::uint32_t size) noexcept {
    std::copy_n(buffer_.data() + next_, size, to);
    next_ += size;
    return size;
  }
  std::uint32_t readOn(unsigned char* to, std::uint32_t size) noexcept;
  bool hasBuffer() noexcept;
  /// One read of up to `size` bytes. If it returns 0, the state tells why.
  std::uint64_t readOnce(unsigned char* to, std::uint64_t size) noexcept;
  /// The result of a reading call, which is repeated while there is nothing to read yet.
  template <class Call>
  ssize_t waiting(Call call) noexcept;
  bool waitForData() const noexcept;

  /// The steps of `readWhole`. They return false if the file cannot be read or is not seekable.
  /// @{
  bool endLookAhead() noexcept;
  bool askDeviceSize() noexcept;
  bool fillFromStart(ByteBuffer& bytes, std::uint64_t& count) noexcept;
  /// @}
  std::uint64_t firstRoom() const noexcept;
  /// Uses the size of the file at opening, which saves a system call. If there is no memory for that, uses the
  /// current size.
  ByteBuffer makeRoom();
  void readFromStart(QARByteArray& content);
  void readRest(QARByteArray& content);
  /// Records `errno` and sets the state to bad. Always returns false.
  bool fail() noexcept;

  int handle_ = -1;
  std::ios_base::iostate state_ = std::ios_base::goodbit;
  int error_ = 0;
  bool regular_ = false;
  std::uint64_t size_ = 0;  // at the last query; also 0 for a regular file that does not report its size
  ByteBuffer buffer_;       // the look-ahead: [next_, filled_) has been read and not yet been delivered
  std::uint64_t next_ = 0;
  std::uint64_t filled_ = 0;
};

}  // namespace Korvane::qardatainterfaces
