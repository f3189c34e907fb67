#pragma once

#include <cstdint>

namespace opc {

/// A source of bytes that is read once, from its start to its end.
///
/// Ownership  Whoever reads a stream refers to it and never destroys it.
/// Threads    One stream serves one thread at a time.
class [[gnu::visibility("default")]] InputStream {
public:
  /// Places at most `size` bytes at `buffer` and returns how many; 0 is no sign of the end.
  virtual std::uint64_t read(void* buffer, std::uint64_t size) = 0;

  /// Whether everything has been delivered.
  virtual bool exhausted() = 0;

  /// Comes last: what packages are read by has its operations in the slots before.
  virtual ~InputStream() = default;
};

}  // namespace opc
