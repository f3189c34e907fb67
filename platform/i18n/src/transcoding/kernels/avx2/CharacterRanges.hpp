#pragma once

#include "transcoding/kernels/avx2/target.hpp"
#include "transcoding/kernels/tables.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include <immintrin.h>

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {

/// Ranges of 64 characters whose UTF-8 has the same `length` bytes except for the last one, with their codes in a
/// single-byte code page. All characters of 32 bytes are looked up at once, in registers.
///
/// Bits       110rrrrr 10iiiiii; 1110rrrr 10rrrrrr 10iiiiii: `r` selects the range, `i` the character.
/// Threads    The codes are copied when a range is added. Codes that another thread looks up later are missing.
template <std::size_t length>
class CharacterRanges {
public:
  /// The number of bytes that `codes` reads.
  static constexpr std::size_t bytes_read = sizeof(__m256i) + length - 1;

  bool is_empty() const noexcept { return count_ == 0; }

  /// Adds the range of the character at `from`. If there are too many, the others are forgotten.
  void add(const char* from, char32_t code, const EncodeRows::Bytes& bytes) noexcept {
    if (count_ == ranges_.size()) count_ = 0;
    auto& range = ranges_[count_++];
    range.first = from[0];
    range.next_to_last = from[length - 2];
    const std::size_t begin = code / size * size;
    for (std::size_t i = 0; i < size; ++i) range.steps[i] = bytes[begin + i].load(std::memory_order_relaxed);
    for (std::size_t i = size - 1; i >= row; --i) range.steps[i] ^= range.steps[i - row];
  }

  /// The codes of the characters that begin in these 32 bytes, each in place of the first byte. All other bytes are
  /// zero, also for characters of other ranges, without a code, or malformed ones.
  ///
  /// Invariant  after row n of a range, `code` is the sum (by xor) of the steps of rows 0 to n, which is the code in
  ///            row n. An index that is below a row has become negative there, and the shuffle gives 0 for it. So
  ///            each character ends with the code in its own row.
  __m256i codes(const char* from) const noexcept {
    const __m256i first = load(from), next_to_last = load(from + length - 2), last = load(from + length - 1);
    const __m256i index = _mm256_xor_si256(last, all(0x80));
    const __m256i index1 = _mm256_sub_epi8(index, all(row));
    const __m256i index2 = _mm256_sub_epi8(index, all(2 * row));
    const __m256i index3 = _mm256_sub_epi8(index, all(3 * row));
    __m256i codes = _mm256_setzero_si256();
    for (std::size_t i = 0; i < count_; ++i) {
      const Range& range = ranges_[i];
      const __m256i code = _mm256_xor_si256(_mm256_xor_si256(range.in_row(0, index), range.in_row(1, index1)),
                                            _mm256_xor_si256(range.in_row(2, index2), range.in_row(3, index3)));
      __m256i is_in_range = _mm256_cmpeq_epi8(next_to_last, _mm256_set1_epi8(range.next_to_last));
      if constexpr (length == 3)
        is_in_range = _mm256_and_si256(is_in_range, _mm256_cmpeq_epi8(first, _mm256_set1_epi8(range.first)));
      codes = _mm256_or_si256(codes, _mm256_and_si256(code, is_in_range));
    }
    const __m256i is_continuation = _mm256_cmpgt_epi8(all(0xC0), last);  // as signed numbers
    return _mm256_and_si256(codes, is_continuation);
  }

private:
  static constexpr std::size_t size = 64;
  static constexpr std::size_t row = sizeof(__m128i);

  struct Range {
    // The codes of the first row, and in each further row their differences (by xor) from the row before.
    alignas(row) std::array<std::uint8_t, size> steps;
    char first;
    char next_to_last;

    __m256i in_row(std::size_t n, __m256i index) const noexcept {
      const auto* const bytes = reinterpret_cast<const __m128i*>(steps.data() + n * row);
      return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(_mm_load_si128(bytes)), index);
    }
  };

  static __m256i all(unsigned byte) noexcept { return _mm256_set1_epi8(static_cast<char>(byte)); }
  static __m256i load(const char* from) noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  }

  std::array<Range, 32> ranges_;  // a block of 64 bytes never has characters of more ranges
  std::size_t count_ = 0;
};

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
