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
  /// The number of bytes that `codes` and `slots` read.
  static constexpr std::size_t bytes_read = sizeof(__m256i) + length - 1;

  /// The most ranges that pay: with more, the kernel for all processors is faster.
  static constexpr std::size_t most = 8;

  std::size_t count() const noexcept { return count_; }

  /// Adds the range of the character at `from`. Requires: the character is well-formed, has `length` bytes and has a
  /// code; there are fewer ranges than `most`.
  void add(const char* from, char32_t code, const EncodeRows::Bytes& bytes) noexcept {
    auto& range = ranges_[count_++];
    range.first = from[0];
    range.next_to_last = from[length - 2];
    const std::size_t begin = code / size * size;
    for (std::size_t i = 0; i < size; ++i) range.steps[i] = bytes[begin + i].load(std::memory_order_relaxed);
    for (std::size_t i = size - 1; i >= row; --i) range.steps[i] ^= range.steps[i - row];
  }

  /// The codes of the characters that begin in these 32 bytes, each in place of the first byte. All other bytes are
  /// zero, also for characters of other ranges, without a code, or malformed ones.
  __m256i codes(const char* from) const noexcept {
    const Characters characters(from);
    const Index index(_mm256_xor_si256(characters.last, all(0x80)));
    __m256i codes = _mm256_setzero_si256();
    for (std::size_t i = 0; i < count_; ++i)
      codes = _mm256_or_si256(codes, _mm256_and_si256(ranges_[i].code(index), characters.are_in(ranges_[i])));
    return _mm256_and_si256(codes, characters.have_last());
  }

  /// Whether there are one or two ranges. Their characters can be packed first, as slots, and looked up afterwards:
  ///
  /// Bits       0aaaaaaa ASCII; 1riiiiii: `r` is the range, `i` the character.
  bool have_slots() const noexcept { return count_ == 1 || count_ == 2; }

  /// These 32 bytes with the slot of each character of the ranges in place of its first byte, and these places.
  /// Requires: `have_slots()`.
  struct Slots {
    __m256i bytes, leads;
  };
  Slots slots(const char* from) const noexcept {
    const Characters characters(from);
    const __m256i in_second = characters.are_in(ranges_[count_ - 1]);
    const __m256i in_any = _mm256_or_si256(characters.are_in(ranges_[0]), in_second);
    const __m256i slots = _mm256_or_si256(characters.last, _mm256_and_si256(in_second, all(0x40)));
    return {_mm256_blendv_epi8(characters.first, slots, characters.first),
            _mm256_and_si256(in_any, characters.have_last())};
  }

  /// Replaces 32 packed slots by their codes. Returns bytes that are negative where there is no code.
  /// Requires: `have_slots()`.
  __m256i look_up(char* slots) const noexcept {
    const __m256i bytes = load(slots);
    const Index index(_mm256_and_si256(bytes, all(0x3F)));
    const __m256i is_second = _mm256_slli_epi16(bytes, 1);
    const __m256i codes = _mm256_blendv_epi8(ranges_[0].code(index), ranges_[count_ - 1].code(index), is_second);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(slots), _mm256_blendv_epi8(bytes, codes, bytes));
    return _mm256_and_si256(_mm256_cmpeq_epi8(codes, _mm256_setzero_si256()), bytes);
  }

private:
  static constexpr std::size_t size = 64;
  static constexpr std::size_t row = sizeof(__m128i);

  // Indices into a range, and their distances from its further rows.
  struct Index {
    explicit Index(__m256i index) noexcept
        : in_range(index),
          row1(_mm256_sub_epi8(index, all(row))),
          row2(_mm256_sub_epi8(index, all(2 * row))),
          row3(_mm256_sub_epi8(index, all(3 * row))) {}
    __m256i in_range, row1, row2, row3;
  };

  struct Range {
    // The codes of the first row, and in each further row their differences (by xor) from the row before.
    alignas(row) std::array<std::uint8_t, size> steps;
    char first;
    char next_to_last;

    // Invariant  the sum (by xor) of the steps of rows 0 to n is the code in row n. The distance of a character from
    //            the rows after its own is negative, so the shuffle gives 0 for them.
    __m256i code(const Index& index) const noexcept {
      return _mm256_xor_si256(_mm256_xor_si256(in_row(0, index.in_range), in_row(1, index.row1)),
                              _mm256_xor_si256(in_row(2, index.row2), in_row(3, index.row3)));
    }
    __m256i in_row(std::size_t n, __m256i index) const noexcept {
      const auto* const bytes = reinterpret_cast<const __m128i*>(steps.data() + n * row);
      return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(_mm_load_si128(bytes)), index);
    }
  };

  // For each of 32 bytes, the bytes of the character that may begin there.
  struct Characters {
    explicit Characters(const char* from) noexcept
        : first(load(from)), next_to_last(load(from + length - 2)), last(load(from + length - 1)) {}

    __m256i are_in(const Range& range) const noexcept {
      const __m256i fit = _mm256_cmpeq_epi8(next_to_last, _mm256_set1_epi8(range.next_to_last));
      if constexpr (length == 2) return fit;
      return _mm256_and_si256(fit, _mm256_cmpeq_epi8(first, _mm256_set1_epi8(range.first)));
    }
    // Whether the last byte is a continuation byte; compared as signed numbers.
    __m256i have_last() const noexcept { return _mm256_cmpgt_epi8(all(0xC0), last); }

    __m256i first, next_to_last, last;
  };

  static __m256i all(unsigned byte) noexcept { return _mm256_set1_epi8(static_cast<char>(byte)); }
  static __m256i load(const char* from) noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  }

  std::array<Range, most> ranges_;
  std::size_t count_ = 0;
};

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
