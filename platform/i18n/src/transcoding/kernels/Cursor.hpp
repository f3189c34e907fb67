#pragma once

#include <cstddef>

namespace ku::i18n::detail {

/// The position of a conversion from bytes to bytes: the rest of the input, and the room left for output.
struct ByteCursor {
  const char* from;
  const char* end;
  char* to;
  char* limit;

  std::size_t left() const noexcept { return static_cast<std::size_t>(end - from); }
  std::size_t room() const noexcept { return static_cast<std::size_t>(limit - to); }
  /// The number of bytes that can be copied.
  std::size_t both() const noexcept { return left() < room() ? left() : room(); }
  void advance(std::size_t bytes) noexcept {
    from += bytes;
    to += bytes;
  }
};

inline unsigned byte_at(const char* from, std::size_t at) { return static_cast<unsigned char>(from[at]); }

}  // namespace ku::i18n::detail
