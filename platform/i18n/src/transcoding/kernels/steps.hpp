#pragma once

#include "transcoding/kernels/ascii.hpp"
#include "transcoding/kernels/direct.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {

inline unsigned byte_at(const char* from, std::size_t at) { return static_cast<unsigned char>(from[at]); }

/// Appends the bytes of a cell. The length is written, too, but what follows is written over it.
inline void put(DirectCursor& c, std::uint32_t cell) {
  std::memcpy(c.to, &cell, sizeof(cell));
  c.to += CodeTables::length(cell);
}

/// How many bytes a step looks at: at most a character of UTF-8 that the tables have, and its end in sight.
constexpr std::size_t sight = 4;

// Copies ASCII, if that is its own conversion, by blocks, and has `step` take what stands between, as long as it
// knows it.
template <class Step>
DirectCursor convert_in_sight(DirectCursor c, bool keeps_ascii, Step step) {
  while (c.left() >= sight && c.room() >= sizeof(std::uint32_t)) {
    if (keeps_ascii && c.both() >= ascii_block) {
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
      if (keeps_ascii && byte_at(c.from, 0) < 0x80) break;  // no step comes to the end
    }
  }
  return c;
}

/// Converts as far as `step` knows the characters: it takes one or more from a cursor with `sight` left and room for
/// a cell, or returns false.
template <class Step>
DirectCursor convert_by_steps(DirectCursor c, bool keeps_ascii, Step step) {
  c = convert_in_sight(c, keeps_ascii, step);
  if (c.left() >= sight) return c;
  std::array<char, 2 * sight> padded{};  // with zeros, which belong to no character but themselves
  std::copy(c.from, c.end, padded.begin());
  DirectCursor last{padded.data(), padded.data() + c.left(), c.to, c.limit};
  while (last.left() > 0 && last.room() >= sizeof(std::uint32_t) && step(last)) continue;
  c.from += last.from - padded.data();
  c.to = last.to;
  return c;
}

}  // namespace ku::i18n::detail
