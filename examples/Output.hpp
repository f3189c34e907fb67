#pragma once

#include <cstddef>
#include <string>
#include <system_error>

namespace qarread {

/// Standard output has failed: there is no point in going on.
class OutputError : public std::system_error {
public:
  using std::system_error::system_error;
};

/// Standard output, unbuffered and below `std::cout`, to which the library itself prints.
///
/// Errors  `OutputError`, for a closed pipe too if SIGPIPE is ignored.
class Output {
public:
  void write(const void* bytes, std::size_t size);
  void write(const std::string& text) { write(text.data(), text.size()); }

  /// Closes it, since some file systems tell only then that a write has failed.
  void finish();

private:
  bool used_ = false;
};

}  // namespace qarread
