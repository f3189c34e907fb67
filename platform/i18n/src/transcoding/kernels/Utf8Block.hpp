#pragma once

#include "transcoding/kernels/ascii.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

#include <emmintrin.h>

namespace ku::i18n::detail {

/// 64 bytes of UTF-8, classified together. The masks have one bit for each byte; the lowest bit is the first byte.
///
/// Invariant  `is_well_formed` accepts a block that begins within a character. `is_simple`, `decode` and
///            `decode_pairs` require one that begins with a character; the latter two also require `is_simple`.
/// Reads      `bytes_read`: two bytes past the block, where a character of three bytes may end.
/// Bits       two bytes 110yyyyy 10xxxxxx -> yyyyyxxxxxx; three 1110zzzz 10yyyyyy 10xxxxxx -> zzzzyyyyyyxxxxxx.
///            Bytes are compared as signed numbers, so continuation bytes are those less than C0.
class Utf8Block {
public:
  static constexpr std::size_t size = 64;
  static constexpr std::size_t bytes_read = size + 2;

  explicit Utf8Block(const char* from) noexcept : from_(from) {
    __m128i unusual = _mm_setzero_si128();
    __m128i surrogates = unusual;
    for (std::size_t part = 0; part < parts; ++part) {
      const __m128i bytes = load(part, 0);
      non_ascii_ |= mask(part, bytes);
      continuations_ |= mask(part, _mm_cmplt_epi8(bytes, all(0xC0)));
      triples_ |= mask(part, are_at_least(bytes, 0xE0));
      unusual = any(unusual, any(are_overlong(bytes, load(part, 1)), are_at_least(bytes, 0xF0)));
      surrogates = any(surrogates, _mm_cmpeq_epi8(bytes, all(0xED)));
    }
    is_unusual_ = _mm_movemask_epi8(unusual) != 0;
    may_have_surrogates_ = _mm_movemask_epi8(surrogates) != 0;
  }

  bool is_ascii() const noexcept { return non_ascii_ == 0; }

  /// Whether the block is well-formed if it begins with the continuation bytes `due`. If so, sets `due` to the
  /// continuation bytes that must begin the next block.
  bool is_well_formed(std::uint64_t& due) const noexcept {
    const std::uint64_t quadruples = is_unusual_ ? find_quadruples() : 0;
    if (!has_form(quadruples, due)) return false;
    if ((is_unusual_ || may_have_surrogates_) && !has_valid_seconds()) return false;
    due = leads() >> 63 | triples_ >> 62 | quadruples >> 61;
    return true;
  }

  /// For well-formed text: the starts of all characters, including an incomplete last one.
  std::uint64_t all_starts() const noexcept { return ~continuations_; }

  /// Whether a block that begins with a character has only characters of up to three bytes and encoded surrogates.
  bool is_simple() const noexcept { return !is_unusual_ && has_form(0, 0); }
  /// The same, without surrogates.
  bool is_simple_text() const noexcept { return is_simple() && (!may_have_surrogates_ || has_valid_seconds()); }
  /// Whether no character has three bytes.
  bool has_pairs_at_most() const noexcept { return triples_ == 0; }

  /// For simple text: the starts of the characters that are complete in the block, and their total length.
  std::uint64_t starts() const noexcept { return ~continuations_ & ~cut(); }
  std::size_t length() const noexcept { return cut() == 0 ? size : first_bit(cut()); }

  using Codes = std::array<char16_t, size>;

  /// For simple text: the character that begins at each byte.
  Codes decode() const noexcept {
    Codes codes;
    for (std::size_t part = 0; part < parts; ++part) {
      const __m128i first = load(part, 0);
      const __m128i is_long = _mm_cmplt_epi8(first, all(0));
      const __m128i is_triple = are_at_least(first, 0xE0);
      const __m128i last = select(is_triple, load(part, 2), load(part, 1));
      const __m128i low = select(is_long, low_bits(last, 0x3F), first);
      const __m128i middle = both(is_long, select(is_triple, low_bits(load(part, 1), 0x3F), low_bits(first, 0x1F)));
      const __m128i high = both(is_triple, low_bits(_mm_slli_epi16(first, 4), 0xF0));
      place(&codes[part * sizeof(__m128i)], _mm_unpacklo_epi8(low, high), _mm_unpacklo_epi8(middle, all(0)));
      place(&codes[part * sizeof(__m128i) + 8], _mm_unpackhi_epi8(low, high), _mm_unpackhi_epi8(middle, all(0)));
    }
    return codes;
  }

  /// The same for simple text without characters of three bytes.
  Codes decode_pairs() const noexcept {
    Codes codes;
    for (std::size_t part = 0; part < parts; ++part) {
      const __m128i first = load(part, 0);
      const __m128i is_long = _mm_cmplt_epi8(first, all(0));
      const __m128i low = select(is_long, low_bits(load(part, 1), 0x3F), first);
      const __m128i high = both(is_long, low_bits(first, 0x1F));
      place(&codes[part * sizeof(__m128i)], _mm_unpacklo_epi8(low, all(0)), _mm_unpacklo_epi8(high, all(0)));
      place(&codes[part * sizeof(__m128i) + 8], _mm_unpackhi_epi8(low, all(0)), _mm_unpackhi_epi8(high, all(0)));
    }
    return codes;
  }

private:
  static constexpr std::size_t parts = size / sizeof(__m128i);

  std::uint64_t leads() const noexcept { return non_ascii_ & ~continuations_; }
  // For simple text: the start of the character that continues after the block, if there is one.
  std::uint64_t cut() const noexcept {
    constexpr std::uint64_t last = std::uint64_t{1} << 63;
    return (leads() & last) | (triples_ & (last >> 1));
  }

  bool has_form(std::uint64_t quadruples, std::uint64_t due) const noexcept {
    return (leads() << 1 | triples_ << 2 | quadruples << 3 | due) == continuations_;
  }

  std::uint64_t find_quadruples() const noexcept {
    std::uint64_t quadruples = 0;
    for (std::size_t part = 0; part < parts; ++part) quadruples |= mask(part, are_at_least(load(part, 0), 0xF0));
    return quadruples;
  }

  // Whether there are no overlong forms, no surrogates and nothing beyond U+10FFFF. Continuation bytes are compared
  // as signed numbers.
  bool has_valid_seconds() const noexcept {
    __m128i wrong = _mm_setzero_si128();
    for (std::size_t part = 0; part < parts; ++part) {
      const __m128i first = load(part, 0), second = load(part, 1);
      const auto forbid = [&](unsigned byte, __m128i seconds) {
        wrong = any(wrong, both(_mm_cmpeq_epi8(first, all(byte)), seconds));
      };
      wrong = any(wrong, are_overlong(first, second));
      forbid(0xED, _mm_cmpgt_epi8(second, all(0x9F)));
      forbid(0xF0, _mm_cmplt_epi8(second, all(0x90)));
      forbid(0xF4, _mm_cmpgt_epi8(second, all(0x8F)));
      wrong = any(wrong, are_at_least(first, 0xF5));
    }
    return _mm_movemask_epi8(wrong) == 0;
  }

  // Overlong forms of two or three bytes.
  static __m128i are_overlong(__m128i first, __m128i second) noexcept {
    return any(_mm_cmpeq_epi8(low_bits(first, 0xFE), all(0xC0)),
               both(_mm_cmpeq_epi8(first, all(0xE0)), _mm_cmplt_epi8(second, all(0xA0))));
  }

  __m128i load(std::size_t part, std::size_t offset) const noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from_ + part * sizeof(__m128i) + offset));
  }
  static void place(char16_t* to, __m128i outer, __m128i inner) noexcept {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), any(outer, _mm_slli_epi16(inner, 6)));
  }
  static std::uint64_t mask(std::size_t part, __m128i bytes) noexcept {
    return std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(bytes))} << (part * sizeof(__m128i));
  }
  static __m128i all(unsigned byte) noexcept { return _mm_set1_epi8(static_cast<char>(byte)); }
  static __m128i any(__m128i one, __m128i other) noexcept { return _mm_or_si128(one, other); }
  static __m128i both(__m128i one, __m128i other) noexcept { return _mm_and_si128(one, other); }
  static __m128i low_bits(__m128i bytes, unsigned bits) noexcept { return _mm_and_si128(bytes, all(bits)); }
  static __m128i select(__m128i condition, __m128i one, __m128i other) noexcept {
    return _mm_or_si128(_mm_and_si128(condition, one), _mm_andnot_si128(condition, other));
  }
  static __m128i are_at_least(__m128i bytes, unsigned least) noexcept {
    return _mm_cmpeq_epi8(_mm_max_epu8(bytes, all(least)), bytes);
  }

  const char* from_;
  std::uint64_t non_ascii_ = 0;
  std::uint64_t continuations_ = 0;
  std::uint64_t triples_ = 0;
  bool is_unusual_;
  bool may_have_surrogates_;
};

}  // namespace ku::i18n::detail
