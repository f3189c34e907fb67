#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/kernels.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/wide.hpp"

namespace ku::i18n::detail {
namespace {

// Widens ASCII by blocks, and returns its length: less than a block behind it is not ASCII, or short of room.
//
// Reads      a block at a time.
// Writes     two bytes for each.
template <std::endian order>
std::size_t widen_ascii(const ByteCursor& c) noexcept {
  std::size_t at = 0;
  for (; at + ascii_block <= c.left() && 2 * (at + ascii_block) <= c.room(); at += ascii_block) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(c.from + at));
    if (_mm_movemask_epi8(bytes) != 0) break;
    const __m128i zero = _mm_setzero_si128();
    const bool is_native = order == std::endian::native;
    auto* const to = reinterpret_cast<__m128i*>(c.to + 2 * at);
    _mm_storeu_si128(to, is_native ? _mm_unpacklo_epi8(bytes, zero) : _mm_unpacklo_epi8(zero, bytes));
    _mm_storeu_si128(to + 1, is_native ? _mm_unpackhi_epi8(bytes, zero) : _mm_unpackhi_epi8(zero, bytes));
  }
  return at;
}

// Converts the characters of a block that begin in it, if none of them has four bytes or is malformed.
//
// Invariant  `codes` has the character that begins at each byte; those before the lowest bit of `starts` are written.
// Writes     two bytes a character.
template <std::endian order>
bool put_block(ByteCursor& c) noexcept {
  const Utf8Block block(c.from);
  if (!block.is_simple_text()) return false;
  const auto codes = block.has_pairs_at_most() ? block.decode_pairs() : block.decode();
  char* to = c.to;
  for (std::uint64_t starts = block.starts(); starts != 0; starts &= starts - 1) {
    put_wide<char16_t, order>(codes[first_bit(starts)], to);
    to += 2;
  }
  c.from += block.length();
  c.to = to;
  return true;
}

}  // namespace

// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      a block and two bytes, or a character; each only if they are there.
// Writes     two bytes a byte at most; likewise.
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor c) noexcept {
  while (c.left() >= 4 && c.room() >= 4) {
    const std::size_t ascii = widen_ascii<order>(c);
    c.from += ascii;
    c.to += 2 * ascii;
    while (c.left() >= Utf8Block::bytes_read && c.room() >= 2 * Utf8Block::size && put_block<order>(c)) continue;
    // A few characters one by one: what the block ends with, or what keeps it from being converted.
    for (int i = 0; i < 8 && c.left() >= 4 && c.room() >= 4; ++i) {
      const auto [code, length] = first_whole_character(c.from);
      if (length == 0) return c;
      if (code < 0x10000) {
        put_wide<char16_t, order>(static_cast<char16_t>(code), c.to);
        c.to += 2;
      } else {
        put_wide<char16_t, order>(lead_of(code), c.to);
        put_wide<char16_t, order>(trail_of(code), c.to + 2);
        c.to += 4;
      }
      c.from += length;
    }
  }
  return c;
}

template ByteCursor utf8_to_utf16<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf8_to_utf16<std::endian::big>(ByteCursor) noexcept;

}  // namespace ku::i18n::detail
