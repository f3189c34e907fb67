#include "utf8.hpp"

#include "ascii.hpp"

namespace ku::i18n::detail {
namespace {

unsigned byte_at(const char* from, std::size_t at) { return static_cast<unsigned char>(from[at]); }

bool is_continuation(unsigned byte) { return (byte & 0xC0) == 0x80; }

bool is_surrogate(unsigned unit) { return (unit & 0xF800) == 0xD800; }

// Each of these takes one character of its length, or tells that there is none.

bool decode_two(DecodingCursor& c) {
  const unsigned lead = byte_at(c.from, 0);
  if (lead < 0xC2 || c.left() < 2 || !is_continuation(byte_at(c.from, 1))) return false;
  *c.to++ = static_cast<char16_t>((lead & 0x1F) << 6 | (byte_at(c.from, 1) & 0x3F));
  c.from += 2;
  return true;
}

bool decode_three(DecodingCursor& c) {
  if (c.left() < 3 || !is_continuation(byte_at(c.from, 1)) || !is_continuation(byte_at(c.from, 2))) return false;
  const unsigned unit =
      (byte_at(c.from, 0) & 0x0F) << 12 | (byte_at(c.from, 1) & 0x3F) << 6 | (byte_at(c.from, 2) & 0x3F);
  if (unit < 0x800 || is_surrogate(unit)) return false;
  *c.to++ = static_cast<char16_t>(unit);
  c.from += 3;
  return true;
}

bool decode_four(DecodingCursor& c) {
  if (c.left() < 4 || c.room() < 2) return false;
  for (std::size_t at = 1; at < 4; ++at)
    if (!is_continuation(byte_at(c.from, at))) return false;
  const unsigned code = (byte_at(c.from, 0) & 0x07) << 18 | (byte_at(c.from, 1) & 0x3F) << 12 |
                        (byte_at(c.from, 2) & 0x3F) << 6 | (byte_at(c.from, 3) & 0x3F);
  if (code < 0x10000 || code > 0x10FFFF) return false;
  *c.to++ = static_cast<char16_t>(0xD7C0 + (code >> 10));
  *c.to++ = static_cast<char16_t>(0xDC00 | (code & 0x3FF));
  c.from += 4;
  return true;
}

bool decode_one(DecodingCursor& c) {
  const unsigned lead = byte_at(c.from, 0);
  if (lead < 0x80) {
    *c.to++ = static_cast<char16_t>(lead);
    ++c.from;
    return true;
  }
  if (lead < 0xE0) return decode_two(c);
  if (lead < 0xF0) return decode_three(c);
  return lead < 0xF5 && decode_four(c);
}

template <class... Bytes>
void put(EncodingCursor& c, std::size_t taken, Bytes... bytes) {
  ((*c.to++ = static_cast<char>(bytes)), ...);
  c.from += taken;
}

bool encode_one(EncodingCursor& c) {
  const unsigned unit = *c.from;
  if (unit < 0x80) {
    put(c, 1, unit);
  } else if (unit < 0x800) {
    if (c.room() < 2) return false;
    put(c, 1, 0xC0 | unit >> 6, 0x80 | (unit & 0x3F));
  } else if (!is_surrogate(unit)) {
    if (c.room() < 3) return false;
    put(c, 1, 0xE0 | unit >> 12, 0x80 | (unit >> 6 & 0x3F), 0x80 | (unit & 0x3F));
  } else {
    if (unit >= 0xDC00 || c.left() < 2 || (c.from[1] & 0xFC00) != 0xDC00 || c.room() < 4) return false;
    const unsigned code = 0x10000 + ((unit & 0x3FF) << 10 | (c.from[1] & 0x3FF));
    put(c, 2, 0xF0 | code >> 18, 0x80 | (code >> 12 & 0x3F), 0x80 | (code >> 6 & 0x3F), 0x80 | (code & 0x3F));
  }
  return true;
}

}  // namespace

void decode_utf8(DecodingCursor& c) {
  while (c.both() > 0) {
    if (byte_at(c.from, 0) < 0x80) c.advance(widen_ascii(c.from, c.both(), c.to));
    // Sixteen bytes that are not all ASCII: from here on one by one, for as long as a test would hardly pay.
    for (int tries = 16; tries > 0 && c.both() > 0; --tries)
      if (!decode_one(c)) return;
  }
}

void encode_utf8(EncodingCursor& c) {
  static const bool has_ssse3 = __builtin_cpu_supports("ssse3");
  while (c.both() > 0) {
    if (has_ssse3)
      encode_short_utf8_ssse3(c);
    else
      c.advance(narrow_ascii(c.from, c.both(), c.to));
    for (int tries = 8; tries > 0 && c.both() > 0; --tries)
      if (!encode_one(c)) return;
  }
}

std::size_t copy_utf8(const char* from, std::size_t count, char* to) {
  std::size_t at = 0;
  while (at < count) {
    const std::size_t start = at;
    at += copy_ascii(from + at, count - at, to + at);
    char16_t units[2];
    while (at < count && byte_at(from, at) >= 0x80) {
      DecodingCursor c{from + at, from + count, units, units + 2};
      if (!decode_one(c)) break;
      for (; from + at < c.from; ++at) to[at] = from[at];
    }
    if (at == start) break;
  }
  return at;
}

}  // namespace ku::i18n::detail
