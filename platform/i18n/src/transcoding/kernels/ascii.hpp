#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include <emmintrin.h>

namespace ku::i18n::detail {

/// Block size of the ASCII scan, in bytes: one register.
constexpr std::size_t ascii_block = 16;

/// Copies the block at `from`. Returns a mask of the bytes that are not ASCII; the lowest bit is the first byte.
inline unsigned copy_block(const char* from, char* to) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
  return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

/// Size of the window in which text with few characters beyond ASCII is converted: two blocks.
constexpr std::size_t window_size = 2 * ascii_block;

/// Like `copy_block`, for a window.
inline std::uint32_t copy_window(const char* from, char* to) {
  return copy_block(from, to) | copy_block(from + ascii_block, to + ascii_block) << ascii_block;
}

/// The index of the lowest set bit, which is that of the first such byte. Requires: there is one.
inline std::size_t first_bit(std::uint64_t bits) { return static_cast<std::size_t>(std::countr_zero(bits)); }

/// Copies ASCII, four blocks at a time, and returns the number of bytes copied, at most `count`. More ASCII may
/// follow.
///
/// Invariant  everything before `at` is ASCII and has been copied.
/// Reads      nothing past `count`.
/// Writes     only what it returns.
inline std::size_t copy_long_ascii(const char* from, std::size_t count, char* to) {
  std::size_t at = 0;
  for (; at + 4 * ascii_block <= count; at += 4 * ascii_block) {
    const auto load = [&](std::size_t block) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at + block * ascii_block));
    };
    const auto store = [&](std::size_t block, __m128i bytes) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at + block * ascii_block), bytes);
    };
    const __m128i a = load(0), b = load(1), c = load(2), d = load(3);
    if (_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) != 0) break;
    store(0, a);
    store(1, b);
    store(2, c);
    store(3, d);
  }
  return at;
}

/// Whether three bytes in a row are not ASCII, as in other scripts but not in Latin text with accents.
template <class Bits>
bool are_dense(Bits non_ascii) {
  return (non_ascii & (non_ascii >> 1) & (non_ascii >> 2)) != 0;
}

}  // namespace ku::i18n::detail
