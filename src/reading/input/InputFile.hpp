#pragma once

#include "types/ByteBuffer.hpp"

#include <qardatainterfaces/QARByteArray.hpp>

#include <algorithm>
#include <cstdint>
#include <ios>
#include <system_error>

namespace Korvane::qardatainterfaces {

class FilePath;

/// What may be opened: anything but a directory, or only what is a regular file itself, no link to one.
enum class FileKind : bool { any, regular };

/// An open file that is read as a standard binary input stream is, and whose state is one.
class InputFile {
public:
  /// Does not throw for a file that cannot be opened: it is then not open, the failure bit is set, no other, and
  /// `error()` says why. A file under another process's lease is waited for.
  InputFile(const FilePath& path, FileKind kind);
  /// Not open, for that reason.
  explicit InputFile(int error) noexcept : state_(std::ios_base::failbit), error_(error) {}
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool good() const noexcept { return state_ == std::ios_base::goodbit; }
  bool atEnd() const noexcept { return (state_ & std::ios_base::eofbit) != 0; }
  /// Why it could not be opened or read on; empty if it could.
  std::error_code error() const noexcept { return {error_, std::system_category()}; }

  /// Reads on, up to `size` bytes. Fewer: the end was met, or the file could not be read, and the state tells.
  std::uint32_t read(unsigned char* to, std::uint32_t size) noexcept {
    return good() && size <= filled_ - next_ ? takeBuffered(to, size) : readOn(to, size);
  }

  /// Makes `content` the whole file as it is now, and leaves the place where `read` goes on. Of a file that cannot be
  /// sought in: all that is left, and the end is then met. If the file cannot be read, `content` stays as it is and
  /// the state is no longer good. If this throws, nothing is lost: `read` goes on where it was.
  void readWhole(QARByteArray& content);

private:
  bool isOpen() const noexcept { return handle_ >= 0; }
  // Small chunks come one after another, and a call would be most of their time.
  std::uint32_t takeBuffered(unsigned char* to, std::uint32_t size) noexcept {
    std::copy_n(buffer_.data() + next_, size, to);
    next_ += size;
    return size;
  }
  std::uint32_t readOn(unsigned char* to, std::uint32_t size) noexcept;
  bool hasBuffer() noexcept;
  /// One read that delivers something, up to `size` bytes. 0: the state tells why.
  std::uint64_t readOnce(unsigned char* to, std::uint64_t size) noexcept;
  /// The result of a call that reads, repeated as long as there is nothing to read yet.
  template <class Call>
  ssize_t waiting(Call call) noexcept;
  bool waitForData() const noexcept;

  /// The steps of `readWhole`. False: the file cannot be read, or not be sought in.
  /// @{
  bool endLookAhead() noexcept;
  bool askDeviceSize() noexcept;
  bool fillFromStart(ByteBuffer& bytes, std::uint64_t& count) noexcept;
  /// @}
  std::uint64_t firstRoom() const noexcept;
  /// Sized by what the file was at opening, since to ask costs a call; by what it is now if there is no memory for
  /// that.
  ByteBuffer makeRoom();
  void readFromStart(QARByteArray& content);
  void readRest(QARByteArray& content);
  /// Sets the state by `errno`. Always false.
  bool fail() noexcept;

  int handle_ = -1;
  std::ios_base::iostate state_ = std::ios_base::goodbit;
  int error_ = 0;
  bool regular_ = false;
  std::uint64_t size_ = 0;  // when it was last asked; 0 also for a regular file that does not tell
  ByteBuffer buffer_;       // the look-ahead: [next_, filled_) has been read and not been delivered
  std::uint64_t next_ = 0;
  std::uint64_t filled_ = 0;
};

}  // namespace Korvane::qardatainterfaces
