#pragma once

#include <cstdint>

namespace opc {

/// A source of bytes that is read once, from its start to its end.
///
/// Ownership  Readers refer to a stream and never destroy it.
/// Errors     Both operations may throw. A reader passes the exception on unchanged and remains usable.
/// Threads    One stream may be used by one thread at a time.
class [[gnu::visibility("default")]] InputStream {
public:
  /// Copies at most `size` bytes to `buffer` and returns how many. Fewer than `size`, or 0, does not mean the end.
  /// May be called again after everything has been delivered, and then returns 0.
  virtual std::uint64_t read(void* buffer, std::uint64_t size) = 0;

  /// Whether everything has been delivered.
  virtual bool exhausted() = 0;

  // Declared last: in the vtable of the package library, the two operations come before the destructor.
  /// Destroys the stream.
  virtual ~InputStream() = default;
};

}  // namespace opc
