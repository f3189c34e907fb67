#pragma once

#include "transcoding/kernels/ascii.hpp"
#include "transcoding/kernels/avx2/shuffles.hpp"
#include "transcoding/kernels/avx2/target.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>

#include <immintrin.h>

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {

/// Whether the 64 bytes are ASCII.
inline bool is_ascii(const char* from) noexcept {
  const auto* const bytes = reinterpret_cast<const __m256i*>(from);
  return _mm256_movemask_epi8(_mm256_or_si256(_mm256_loadu_si256(bytes), _mm256_loadu_si256(bytes + 1))) == 0;
}

/// Writes those of the 64 bytes whose bit is set in the mask, and returns the end of the output.
inline char* put_kept(const char* from, std::uint64_t kept, char* to) noexcept {
#pragma GCC unroll 4
  for (std::size_t at = 0; at < 64; at += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + at));
    const auto packed = [bytes](std::uint64_t mask) {
      return _mm_shuffle_epi8(bytes, _mm_load_si128(reinterpret_cast<const __m128i*>(bytes_kept[mask].from.data())));
    };
    const std::uint64_t lower = (kept >> at) & 0xFF, upper = (kept >> (at + 8)) & 0xFF;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), packed(lower));
    to += std::popcount(lower);
    _mm_storeh_pi(reinterpret_cast<__m64*>(to), _mm_castsi128_ps(packed(upper)));
    to += std::popcount(upper);
  }
  return to;
}

/// 64 bytes of UTF-8, classified together. The masks have one bit for each byte; the lowest bit is the first byte.
///
/// Reads      `bytes_read`: the last bytes of a character that begins in the block.
/// Bits       0xxxxxxx; 110yyyyy 10xxxxxx; 1110zzzz 10yyyyyy 10xxxxxx; 11110www 10zzzzzz 10yyyyyy 10xxxxxx
class Utf8Block {
public:
  static constexpr std::size_t size = 64;
  static constexpr std::size_t bytes_read = size + 3;
  /// The number of bytes at `to` that `decode` may overwrite.
  static constexpr std::size_t bytes_written = 2 * size + sizeof(__m128i);

  explicit Utf8Block(const char* from) noexcept : from_(from) {
#pragma GCC unroll 2
    for (std::size_t part = 0; part < parts; ++part) {
      const __m256i bytes = load(part, 0);
      const std::uint64_t upper = mask(bytes);
      const std::uint64_t lead = upper & mask(_mm256_slli_epi16(bytes, 1));
      const std::uint64_t triple = lead & mask(_mm256_slli_epi16(bytes, 2));
      const std::uint64_t quadruple = triple & mask(_mm256_slli_epi16(bytes, 3));
      const std::size_t shift = part * sizeof(__m256i);
      non_ascii_ |= upper << shift;
      leads_ |= lead << shift;
      triples_ |= triple << shift;
      quadruples_ |= quadruple << shift;
    }
  }

  /// Whether the block is well-formed if it begins with the continuation bytes `due`. Its last character may be
  /// incomplete.
  bool is_well_formed(std::uint64_t due = 0) const noexcept {
    return (leads_ << 1 | triples_ << 2 | quadruples_ << 3 | due) == (non_ascii_ & ~leads_) &&
           !(triples_ == 0 ? has_overlong_pairs() : has_wrong_seconds());
  }
  /// For well-formed text: the continuation bytes of its last character that must begin the next block.
  std::uint64_t due() const noexcept { return leads_ >> 63 | triples_ >> 62 | quadruples_ >> 61; }

  /// For well-formed text that begins with a character: the length of its complete characters.
  std::size_t length() const noexcept { return first_bit(cut()); }

  /// Writes the complete characters in UTF-16, and returns the end of the output.
  template <std::endian order>
  char* decode(char* to) const noexcept {
    if (triples_ == 0) return decode_up_to<2, order>(to);
    return quadruples_ == 0 ? decode_up_to<3, order>(to) : decode_up_to<4, order>(to);
  }

  /// The same for a block of ASCII.
  template <std::endian order>
  static void widen_ascii(const char* from, char* to) noexcept {
    for (std::size_t at = 0; at < size; at += 16)
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + 2 * at), in_order<order>(widen(from + at)));
  }

private:
  static constexpr std::size_t parts = size / sizeof(__m256i);

  // The start of the character that continues after the block, if there is one.
  std::uint64_t cut() const noexcept {
    constexpr std::uint64_t all_bits = ~std::uint64_t{0};
    return (leads_ & (all_bits << 63)) | (triples_ & (all_bits << 62)) | (quadruples_ & (all_bits << 61));
  }

  // Invariant  each byte is decoded to a unit, as if a character began there. For a character beyond U+FFFF, the unit
  //            at its first byte is the lead and the unit at its third byte is the trail. The units of other bytes
  //            are dropped when the units are written.
  template <unsigned most_bytes, std::endian order>
  char* decode_up_to(char* to) const noexcept {
    const std::uint64_t kept = (~non_ascii_ | leads_ | quadruples_ << 2) & (cut() - 1);
#pragma GCC unroll 4
    for (std::size_t at = 0; at < size; at += 16) {
      const __m256i units = in_order<order>(decode_each<most_bytes>(from_ + at));
      to = put_kept(_mm256_castsi256_si128(units), (kept >> at) & 0xFF, to);
      to = put_kept(_mm256_extracti128_si256(units, 1), (kept >> (at + 8)) & 0xFF, to);
    }
    return to;
  }

  template <std::endian order>
  static __m256i in_order(__m256i units) noexcept {
    return order == std::endian::native ? units : any(shifted(units, 8), _mm256_srli_epi16(units, 8));
  }

  static char* put_kept(__m128i units, std::uint64_t kept, char* to) noexcept {
    const auto* const shuffle = reinterpret_cast<const __m128i*>(units_kept[kept].from.data());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(units, _mm_load_si128(shuffle)));
    return to + 2 * std::popcount(kept);
  }

  template <unsigned most_bytes>
  static __m256i decode_each(const char* from) noexcept {
    const __m256i first = _mm256_cvtepi8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
    const __m256i low = bits(widen(from + 1), 0x3F);
    __m256i units = any(shifted(bits(first, 0x1F), 6), low);
    if constexpr (most_bytes >= 3) {
      const __m256i triple = any(any(shifted(first, 12), shifted(low, 6)), bits(widen(from + 2), 0x3F));
      units = select(units, triple, first, 0xE0);
    }
    if constexpr (most_bytes == 4) {
      // wwzzzzzzyyyyyyxxxxxx minus 0x10000 -> 110110wwwwzzzzyy 110111yyyyxxxxxx
      const __m256i high = any(shifted(bits(first, 0x07), 8), shifted(low, 2));
      const __m256i lead = any(high, bits(_mm256_srli_epi16(widen(from + 2), 4), 0x03));
      units = select(units, _mm256_add_epi16(lead, all(0xD7C0)), first, 0xF0);
      const __m256i trail = any(any(shifted(bits(first, 0x0F), 6), low), all(0xDC00));
      units = select(trail, units, first, 0xC0);
    }
    return _mm256_blendv_epi8(first, units, first);
  }

  bool has_overlong_pairs() const noexcept {
    __m256i wrong = _mm256_setzero_si256();
    for (std::size_t part = 0; part < parts; ++part) {
      const __m256i upper = _mm256_and_si256(load(part, 0), _mm256_set1_epi8(static_cast<char>(0xFE)));
      wrong = any(wrong, _mm256_cmpeq_epi8(upper, _mm256_set1_epi8(static_cast<char>(0xC0))));
    }
    return _mm256_testz_si256(wrong, wrong) == 0;
  }

  bool has_wrong_seconds() const noexcept {
    __m256i wrong = _mm256_setzero_si256();
    for (std::size_t part = 0; part < parts; ++part) wrong = any(wrong, wrong_seconds(load(part, 0), load(part, 1)));
    return _mm256_testz_si256(wrong, wrong) == 0;
  }

  // Second bytes that make a sequence overlong, a surrogate or too large, and bytes that never begin a sequence.
  static __m256i wrong_seconds(__m256i first, __m256i second) noexcept {
    enum : char { overlong2 = 1, overlong3 = 2, surrogate = 4, overlong4 = 8, beyond = 16, beyond_all = 32 };
    const __m256i by_first_high = table(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, overlong2, 0, overlong3 | surrogate,
                                        overlong4 | beyond | beyond_all);
    const __m256i by_first_low = table(overlong2 | overlong3 | overlong4, overlong2, 0, 0, beyond, beyond_all,
                                       beyond_all, beyond_all, beyond_all, beyond_all, beyond_all, beyond_all,
                                       beyond_all, beyond_all | surrogate, beyond_all, beyond_all);
    constexpr char always = overlong2 | beyond_all;
    const __m256i by_second_high =
        table(always, always, always, always, always, always, always, always, always | overlong3 | overlong4,
              always | overlong3 | beyond, always | surrogate | beyond, always | surrogate | beyond, always, always,
              always, always);
    const __m256i first_high = _mm256_and_si256(_mm256_srli_epi16(first, 4), _mm256_set1_epi8(0x0F));
    const __m256i first_low = _mm256_and_si256(first, _mm256_set1_epi8(0x0F));
    const __m256i second_high = _mm256_and_si256(_mm256_srli_epi16(second, 4), _mm256_set1_epi8(0x0F));
    return _mm256_and_si256(_mm256_and_si256(_mm256_shuffle_epi8(by_first_high, first_high),
                                             _mm256_shuffle_epi8(by_first_low, first_low)),
                            _mm256_shuffle_epi8(by_second_high, second_high));
  }

  template <class... Bytes>
  static __m256i table(Bytes... bytes) noexcept {
    return _mm256_broadcastsi128_si256(_mm_setr_epi8(static_cast<char>(bytes)...));
  }
  __m256i load(std::size_t part, std::size_t offset) const noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from_ + part * sizeof(__m256i) + offset));
  }
  static std::uint32_t mask(__m256i bytes) noexcept {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
  }
  static __m256i widen(const char* from) noexcept {
    return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
  }
  static __m256i all(unsigned unit) noexcept { return _mm256_set1_epi16(static_cast<short>(unit)); }
  static __m256i any(__m256i one, __m256i other) noexcept { return _mm256_or_si256(one, other); }
  static __m256i bits(__m256i units, unsigned which) noexcept { return _mm256_and_si256(units, all(which)); }
  static __m256i shifted(__m256i units, int by) noexcept { return _mm256_slli_epi16(units, by); }
  // Selects by the lead byte, which is sign-extended. For ASCII the result is arbitrary.
  static __m256i select(__m256i below, __m256i at_least, __m256i first, unsigned least) noexcept {
    return _mm256_blendv_epi8(below, at_least, _mm256_cmpgt_epi16(first, all(0xFF00 + least - 1)));
  }

  const char* from_;
  std::uint64_t non_ascii_ = 0;
  std::uint64_t leads_ = 0;
  std::uint64_t triples_ = 0;
  std::uint64_t quadruples_ = 0;
};

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
