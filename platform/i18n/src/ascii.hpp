#pragma once

#include <cstddef>

#include <emmintrin.h>

namespace ku::i18n::detail {

/// Widens the ASCII bytes that `from` begins with, sixteen at a time, and returns how many they were.
/// Stops early: at most `count`, and fifteen more ASCII bytes may follow.
inline std::size_t widen_ascii(const char* from, std::size_t count, char16_t* to) {
  const __m128i zero = _mm_setzero_si128();
  std::size_t at = 0;
  for (; at + 16 <= count; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at));
    if (_mm_movemask_epi8(bytes) != 0) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at + 8), _mm_unpackhi_epi8(bytes, zero));
  }
  return at;
}

/// The same from UTF-16 to bytes.
inline std::size_t narrow_ascii(const char16_t* from, std::size_t count, char* to) {
  const __m128i beyond = _mm_set1_epi16(static_cast<short>(0xFF80));
  std::size_t at = 0;
  for (; at + 16 <= count; at += 16) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at + 8));
    const __m128i others = _mm_and_si128(_mm_or_si128(low, high), beyond);
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(others, _mm_setzero_si128())) != 0xFFFF) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), _mm_packus_epi16(low, high));
  }
  return at;
}

/// Copies the ASCII bytes that `from` begins with and returns how many they were.
inline std::size_t copy_ascii(const char* from, std::size_t count, char* to) {
  const auto load = [&](std::size_t at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at)); };
  const auto store = [&](std::size_t at, __m128i bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), bytes);
  };
  std::size_t at = 0;
  for (; at + 64 <= count; at += 64) {
    const __m128i a = load(at), b = load(at + 16), c = load(at + 32), d = load(at + 48);
    if (_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) != 0) break;
    store(at, a);
    store(at + 16, b);
    store(at + 32, c);
    store(at + 48, d);
  }
  for (; at < count && static_cast<unsigned char>(from[at]) < 0x80; ++at) to[at] = from[at];
  return at;
}

}  // namespace ku::i18n::detail
