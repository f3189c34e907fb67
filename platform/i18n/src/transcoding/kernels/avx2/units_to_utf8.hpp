#pragma once

#include "transcoding/kernels/avx2/shuffles.hpp"
#include "transcoding/kernels/avx2/target.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>

#include <immintrin.h>

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {

inline __m256i all_units(unsigned unit) noexcept { return _mm256_set1_epi16(static_cast<short>(unit)); }
inline __m256i with_bits(__m256i units, unsigned bits) noexcept { return _mm256_and_si256(units, all_units(bits)); }
inline __m256i any(__m256i one, __m256i other) noexcept { return _mm256_or_si256(one, other); }
inline bool have_no(__m256i units, unsigned bits) noexcept { return _mm256_testz_si256(units, all_units(bits)) != 0; }
/// Compares the units as unsigned numbers.
inline __m256i are_at_least(__m256i units, unsigned least) noexcept {
  return _mm256_cmpeq_epi16(_mm256_max_epu16(units, all_units(least)), units);
}

inline char* put_shuffled(__m128i words, const Shuffles& shuffles, unsigned mask, unsigned least, char* to) noexcept {
  const __m128i shuffle = _mm_load_si128(reinterpret_cast<const __m128i*>(shuffles[mask].from.data()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(words, shuffle));
  return to + least + static_cast<unsigned>(std::popcount(mask));
}

/// The number of bytes at `to` that `put_short` and `put_units` may overwrite: three bytes for each unit, and the
/// size of one register after them.
constexpr std::size_t most_written = 3 * 16 + 16;

/// Writes 16 units below U+0800, and returns the end of the output.
///
/// Bits       00000yyyyyxxxxxx -> 110yyyyy 10xxxxxx, little endian
inline char* put_short(__m256i units, char* to) noexcept {
  const __m256i is_long = are_at_least(units, 0x80);
  const __m256i bytes = any(_mm256_srli_epi16(units, 6), _mm256_slli_epi16(with_bits(units, 0x3F), 8));
  const __m256i words = _mm256_blendv_epi8(units, any(bytes, all_units(0x80C0)), is_long);
  const auto mask = static_cast<unsigned>(
      _mm_movemask_epi8(_mm_packs_epi16(_mm256_castsi256_si128(is_long), _mm256_extracti128_si256(is_long, 1))));
  to = put_shuffled(_mm256_castsi256_si128(words), one_or_two_bytes, mask & 0xFF, 8, to);
  return put_shuffled(_mm256_extracti128_si256(words, 1), one_or_two_bytes, mask >> 8, 8, to);
}

/// Writes 16 units without unpaired surrogates, and returns the end of the output. Each surrogate of a pair becomes
/// two bytes.
///
/// Bits       zzzzyyyyyyxxxxxx -> 1110zzzz 10yyyyyy 10xxxxxx, little endian
///            110110wwwwzzzzyy -> 11110www 10wwzzzz with 1 added to wwww; 110111yyyyxxxxxx -> 10yyyyyy 10xxxxxx
template <bool has_surrogates>
char* put_units(__m256i units, __m256i surrogates, char* to) noexcept {
  const __m256i two = are_at_least(units, 0x80);
  __m256i three = are_at_least(units, 0x800);
  const __m256i trail = with_bits(units, 0x3F);
  const __m256i trail_second = _mm256_slli_epi16(trail, 8);
  const __m256i low_two = any(any(_mm256_srli_epi16(units, 6), trail_second), all_units(0x80C0));
  const __m256i middle = _mm256_slli_epi16(with_bits(units, 0xFC0), 2);
  const __m256i low_three = any(any(_mm256_srli_epi16(units, 12), middle), all_units(0x80E0));
  __m256i low = _mm256_blendv_epi8(units, low_two, two);
  low = _mm256_blendv_epi8(low, low_three, three);
  if constexpr (has_surrogates) {
    three = _mm256_andnot_si256(surrogates, three);
    const __m256i next = _mm256_add_epi16(units, all_units(0x40));
    const __m256i lead =
        any(any(with_bits(_mm256_srli_epi16(next, 8), 0x07), _mm256_slli_epi16(with_bits(next, 0xFC), 6)),
            all_units(0x80F0));
    const __m256i before = _mm256_alignr_epi8(units, _mm256_permute2x128_si256(units, units, 0x08), 14);
    const __m256i second =
        any(any(_mm256_slli_epi16(with_bits(before, 0x03), 4), with_bits(_mm256_srli_epi16(units, 6), 0x0F)),
            any(trail_second, all_units(0x8080)));
    const __m256i is_trail = _mm256_cmpeq_epi16(with_bits(units, 0xFC00), all_units(0xDC00));
    low = _mm256_blendv_epi8(low, _mm256_blendv_epi8(lead, second, is_trail), surrogates);
  }
  const __m256i high = any(trail, all_units(0x80));
  const auto lengths = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_blendv_epi8(three, two, all_units(0x00FF))));
  const __m256i outer = _mm256_unpacklo_epi16(low, high), inner = _mm256_unpackhi_epi16(low, high);
  to = put_shuffled(_mm256_castsi256_si128(outer), up_to_three_bytes, lengths & 0xFF, 4, to);
  to = put_shuffled(_mm256_castsi256_si128(inner), up_to_three_bytes, (lengths >> 8) & 0xFF, 4, to);
  to = put_shuffled(_mm256_extracti128_si256(outer, 1), up_to_three_bytes, (lengths >> 16) & 0xFF, 4, to);
  return put_shuffled(_mm256_extracti128_si256(inner, 1), up_to_three_bytes, lengths >> 24, 4, to);
}

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
