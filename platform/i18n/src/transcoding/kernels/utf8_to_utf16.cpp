#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/kernels.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/wide.hpp"

namespace ku::i18n::detail {
namespace {

// Widens a block as if all of it were ASCII. Returns a mask of the bytes that are not ASCII.
//
// Reads      a block.
// Writes     two bytes for each of its bytes.
template <std::endian order>
unsigned widen_block(const char* from, char* to) noexcept {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i zero = _mm_setzero_si128();
  const bool is_native = order == std::endian::native;
  auto* const units = reinterpret_cast<__m128i*>(to);
  _mm_storeu_si128(units, is_native ? _mm_unpacklo_epi8(bytes, zero) : _mm_unpacklo_epi8(zero, bytes));
  _mm_storeu_si128(units + 1, is_native ? _mm_unpackhi_epi8(bytes, zero) : _mm_unpackhi_epi8(zero, bytes));
  return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

// Converts one character. Returns false if it is malformed.
//
// Reads      four bytes.
// Writes     up to four bytes.
template <std::endian order>
bool put_character(ByteCursor& c) noexcept {
  const auto [code, length] = first_whole_character(c.from);
  if (length == 0) return false;
  if (code < 0x10000) {
    put_wide<char16_t, order>(static_cast<char16_t>(code), c.to);
    c.to += 2;
  } else {
    put_wide<char16_t, order>(lead_of(code), c.to);
    put_wide<char16_t, order>(trail_of(code), c.to + 2);
    c.to += 4;
  }
  c.from += length;
  return true;
}

// Converts the characters that begin in a block. Returns false if one of them has four bytes or is malformed.
//
// Invariant  `codes` has the character that begins at each byte; those before the lowest bit of `starts` are written.
// Writes     two bytes for each character.
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

// Converts 16 bytes at a time if there are few characters beyond ASCII, or 64 bytes if there are many.
//
// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      a block of either size and the bytes after it that it needs; the loop ends before there are fewer.
// Writes     at most two bytes for each byte read; the loop ends before there is less room.
template <std::endian order>
[[gnu::flatten]] ByteCursor utf8_to_utf16(ByteCursor c) noexcept {
  while (c.left() >= Utf8Block::bytes_read + 2 && c.room() >= 2 * Utf8Block::size + 4) {
    const unsigned non_ascii = widen_block<order>(c.from, c.to);
    if (non_ascii == 0) {
      c.from += ascii_block;
      c.to += 2 * ascii_block;
    } else if (!are_dense(non_ascii)) {
      const std::size_t ascii = first_bit(non_ascii);
      c.from += ascii;
      c.to += 2 * ascii;
      if (!put_character<order>(c)) return c;
    } else if (!put_block<order>(c)) {
      for (const char* const end = c.from + Utf8Block::size; c.from < end;)
        if (!put_character<order>(c)) return c;
    }
  }
  while (c.left() >= 4 && c.room() >= 4 && put_character<order>(c)) continue;
  return c;
}

template ByteCursor utf8_to_utf16<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf8_to_utf16<std::endian::big>(ByteCursor) noexcept;

}  // namespace ku::i18n::detail
