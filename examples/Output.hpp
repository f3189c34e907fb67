#pragma once

#include <cstddef>
#include <string>
#include <system_error>

namespace qarread {

/// Writing to standard output failed; the program must end.
class OutputError : public std::system_error {
public:
  using std::system_error::system_error;
};

/// Standard output, written by system calls without a buffer, because the library prints its notices to `std::cout`.
///
/// Errors  `OutputError`; also for a closed pipe if SIGPIPE is ignored.
class Output {
public:
  void write(const void* bytes, std::size_t size);
  void write(const std::string& text) { write(text.data(), text.size()); }

  /// Closes it, since some file systems report a failed write only then.
  void finish();

private:
  bool used_ = false;
};

}  // namespace qarread
