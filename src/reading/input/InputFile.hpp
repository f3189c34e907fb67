#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <algorithm>
#include <cstdint>
#include <ios>
#include <memory>

namespace Korvane::qardatainterfaces {

class ByteBuffer;
class FilePath;

/// What may be opened: anything but a directory, or only what is a regular file itself, no link to one.
enum class FileKind : bool { any, regular };

/// An open file that is read as a standard binary input stream is, and whose state is one.
class InputFile {
public:
  /// Does not throw for a file that cannot be opened: it is then not open, and the failure bit is set, no other.
  InputFile(const FilePath& path, FileKind kind);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool good() const noexcept { return state_ == std::ios_base::goodbit; }
  bool atEnd() const noexcept { return (state_ & std::ios_base::eofbit) != 0; }

  /// Reads on, up to `size` bytes. Fewer: the end was met, or the file could not be read, and the state tells.
  std::uint32_t read(unsigned char* to, std::uint32_t size) {
    return good() && size <= filled_ - next_ ? takeBuffered(to, size) : readOn(to, size);
  }

  /// Makes `content` the whole file and leaves the place where `read` goes on. If the file cannot be read, `content`
  /// stays as it is and the state is no longer good.
  void readWhole(QARByteArray& content);

private:
  bool isOpen() const noexcept { return handle_ >= 0; }
  // Small chunks come one after another, and a call would be most of their time.
  std::uint32_t takeBuffered(unsigned char* to, std::uint32_t size) noexcept {
    std::copy_n(buffer_.get() + next_, size, to);
    next_ += size;
    return size;
  }
  std::uint32_t readOn(unsigned char* to, std::uint32_t size);
  /// One system call, but for interruptions. False: nothing was read, and the state tells why.
  bool readOnce(unsigned char* to, std::uint32_t size, std::uint32_t& count) noexcept;
  bool askDeviceSize() noexcept;
  /// From the `count` bytes there are, reads until `bytes` is full or the end is met. False: the file cannot be read.
  bool fillFromStart(ByteBuffer& bytes, std::uint64_t& count) noexcept;

  int handle_ = -1;
  std::ios_base::iostate state_ = std::ios_base::goodbit;
  bool regular_ = false;
  std::uint64_t size_ = 0;  // at opening; 0 also for a regular file that does not tell
  std::unique_ptr<unsigned char[]> buffer_;
  std::uint32_t next_ = 0;
  std::uint32_t filled_ = 0;
};

}  // namespace Korvane::qardatainterfaces
