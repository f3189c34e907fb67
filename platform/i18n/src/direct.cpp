#include "direct.hpp"

#include "ascii.hpp"
#include "utf8.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {
namespace {

unsigned byte_at(const char* from, std::size_t at) { return static_cast<unsigned char>(from[at]); }

// Appends the bytes of a cell. The length is written, too, but what follows is written over it.
void put(DirectCursor& c, std::uint32_t cell) {
  std::memcpy(c.to, &cell, sizeof(cell));
  c.to += CodeTables::length(cell);
}

// How many bytes a step looks at: at most a character of UTF-8 that the tables have, and its end in sight.
constexpr std::size_t sight = 4;

// Copies ASCII by blocks, and has `step` take what stands between, a character at a time, until it does not know one.
template <class Step>
DirectCursor convert_in_sight(DirectCursor c, Step step) {
  while (c.left() >= sight && c.room() >= sizeof(std::uint32_t)) {
    if (c.both() >= ascii_block) {
      const auto others = copy_block(c.from, c.to);
      c.advance(ascii_prefix(others));
      if (others == 0) {
        c.advance(copy_long_run(c.from, c.both(), c.to));
        continue;
      }
    }
    const char* const pause = c.end - sight;
    const char* const full = c.limit - sizeof(std::uint32_t);
    while (c.from <= pause && c.to <= full) {
      if (!step(c)) return c;
      if (c.from < c.end && byte_at(c.from, 0) < 0x80) break;
    }
  }
  return c;
}

// What is left at last has zeros put behind it: they belong to no character but themselves.
template <class Step>
DirectCursor convert(DirectCursor c, Step step) {
  c = convert_in_sight(c, step);
  if (c.left() >= sight) return c;
  std::array<char, 2 * sight> padded{};
  std::copy(c.from, c.end, padded.begin());
  DirectCursor last{padded.data(), padded.data() + c.left(), c.to, c.limit};
  while (last.left() > 0 && last.room() >= sizeof(std::uint32_t) && step(last)) continue;
  c.from += last.from - padded.data();
  c.to = last.to;
  return c;
}

// The length of the well-formed text that `from` begins with; at least `enough`, if there is as much.
std::size_t valid_prefix(const char* from, std::size_t count, std::size_t enough) {
  std::size_t at = 0;
  while (at < count && at < enough) {
    if (count - at >= ascii_block) {
      const auto others = find_others(from + at);
      at += ascii_prefix(others);
      if (others == 0) continue;
    }
    do {
      auto length = count - at < sight ? 0 : first_short_character(from + at).length;
      if (length == 0) length = first_character(from + at, count - at).length;
      if (length == 0) return at;
      at += length;
    } while (at < count && byte_at(from, at) >= 0x80);
  }
  return at;
}

DirectCursor convert_singles_to_utf8(DirectCursor c, const CodeTables& source) {
  const auto& singles = source.singles();
  while (c.left() >= ascii_block && c.room() >= ascii_block * sizeof(std::uint32_t)) {
    const auto others = copy_block(c.from, c.to);
    if (others == 0) {
      c.advance(ascii_block);
      c.advance(copy_long_run(c.from, c.both(), c.to));
    } else if (are_few(others)) {
      c.advance(ascii_prefix(others));
      put(c, singles[byte_at(c.from++, 0)]);
    } else {
#pragma GCC unroll 16
      for (std::size_t at = 0; at < ascii_block; ++at) put(c, singles[byte_at(c.from, at)]);
      c.from += ascii_block;
    }
  }
  return c;
}

}  // namespace

DirectCursor copy_utf8(DirectCursor c) {
  constexpr std::size_t cached = 16384;
  while (c.both() > 0) {
    const std::size_t count = c.both();
    const std::size_t valid = valid_prefix(c.from, count, cached);
    std::memcpy(c.to, c.from, valid);
    c.advance(valid);
    if (valid < std::min(cached, count)) break;
  }
  return c;
}

DirectCursor convert_to_utf8(DirectCursor c, const CodeTables& source) {
  if (source.has_only_singles()) c = convert_singles_to_utf8(c, source);
  return convert(c, [&](DirectCursor& now) {
    const auto first = byte_at(now.from, 0);
    auto cell = source.singles()[first];
    std::size_t length = 1;
    if (cell == 0) {
      cell = source.pairs(first)[byte_at(now.from, 1)];
      if (cell == 0) return false;
      length = 2;
    }
    now.from += length;
    put(now, cell);
    return true;
  });
}

DirectCursor convert_from_utf8(DirectCursor c, const CodeTables& target) {
  return convert(c, [&](DirectCursor& now) {
    const auto [code, length] = first_short_character(now.from);
    const auto cell = length == 0 ? 0 : target.units(code >> 8)[code & 0xFF];
    if (cell == 0) return false;
    now.from += length;
    put(now, cell);
    return true;
  });
}

}  // namespace ku::i18n::detail
