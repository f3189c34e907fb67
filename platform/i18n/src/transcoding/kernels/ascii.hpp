#pragma once

#include <cstddef>
#include <cstdint>

#include <emmintrin.h>

namespace ku::i18n::detail {

/// ASCII is looked for in blocks of that many bytes.
constexpr std::size_t ascii_block = 16;

/// Copies the block at `from`, and tells which of its bytes are not ASCII, a bit each.
inline unsigned copy_block(const char* from, char* to) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
  return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

/// Two blocks.
constexpr std::size_t stretch = 2 * ascii_block;

inline std::uint32_t copy_stretch(const char* from, char* to) {
  return copy_block(from, to) | copy_block(from + ascii_block, to + ascii_block) << ascii_block;
}

/// Where the first byte is whose bit is set; there must be one.
inline std::size_t first_of(std::uint64_t bits) { return static_cast<unsigned>(__builtin_ctzll(bits)); }

/// How many ASCII bytes a block begins with.
inline std::size_t ascii_prefix(unsigned others) { return others == 0 ? ascii_block : first_of(others); }

/// Copies ASCII by four blocks at a time, and returns its length: at most `count`, and more may follow.
inline std::size_t copy_long_run(const char* from, std::size_t count, char* to) {
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

/// Whether the bytes follow each other: runs of three tell other scripts from Latin letters with accents.
template <class Bits>
bool are_dense(Bits others) {
  return (others & others >> 1 & others >> 2) != 0;
}

}  // namespace ku::i18n::detail
