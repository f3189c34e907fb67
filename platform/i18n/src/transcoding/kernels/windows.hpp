#pragma once

#include "transcoding/kernels/Cursor.hpp"
#include "transcoding/kernels/ascii.hpp"
#include "transcoding/kernels/tables.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {

static_assert(std::endian::native == std::endian::little);  // entries are stored with their first byte lowest

/// Appends the bytes of an entry. Always writes four bytes; the next character overwrites the extra ones.
inline void put(ByteCursor& c, Entry bytes) {
  std::memcpy(c.to, &bytes, sizeof(bytes));
  c.to += length_of(bytes);
}

// Converts a text by windows, in one of three ways. ASCII is copied. A window with a few characters beyond ASCII is
// copied as a whole, and then these characters are converted (`sparse`). A window of another script is converted
// character by character (`dense`).
//
// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      `Kernel::most_read` bytes; the loop ends before there are fewer.
// Writes     `Kernel::most_written` bytes; the loop ends before there is less room.
// Stops      if `sparse` or `dense` returns false: before a character that the kernel cannot convert.
template <class Kernel>
ByteCursor convert_windows(ByteCursor c, bool keeps_ascii, const Kernel& kernel) {
  for (bool known = true; known && c.left() >= Kernel::most_read && c.room() >= Kernel::most_written;) {
    const auto non_ascii = copy_window(c.from, c.to);
    if (!keeps_ascii || are_dense(non_ascii)) {
      known = kernel.dense(c);
    } else if (non_ascii == 0) {
      c.advance(window_size);
      c.advance(copy_long_ascii(c.from, c.both(), c.to));
    } else {
      known = kernel.sparse(c, non_ascii);
    }
  }
  return c;
}

/// The number of bytes that one step, of one character, has read and written; 0 if it cannot convert the character.
/// It is returned by value, so that the cursor stays in registers.
struct Step {
  std::size_t read = 0;
  std::size_t written = 0;
};

/// The most bytes that a step reads: a character of up to four bytes, and the byte after it.
constexpr std::size_t lookahead = 5;
/// The most bytes that a step writes.
constexpr std::size_t most_step_output = 8;
static_assert(lookahead <= most_step_output);

/// Writes the bytes of an entry. Always writes four bytes; the next character overwrites the extra ones.
inline Step put_entry(std::size_t read, Entry bytes, char* to) {
  std::memcpy(to, &bytes, sizeof(bytes));
  return {read, length_of(bytes)};
}

// Converts character by character, and runs of ASCII between them by blocks. `step_of(from, to)` converts one
// character.
//
// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      `lookahead` bytes; the loop ends before there are fewer.
// Writes     `most_step_output` bytes; the loop ends before there is less room.
template <class StepOf>
ByteCursor convert_by_steps_inside(ByteCursor c, bool keeps_ascii, StepOf step_of) {
  while (c.left() >= lookahead && c.room() >= most_step_output) {
    std::size_t both = c.both();
    if (keeps_ascii && both >= ascii_block) {
      const auto non_ascii = copy_block(c.from, c.to);
      if (non_ascii == 0) {
        c.advance(ascii_block);
        c.advance(copy_long_ascii(c.from, c.both(), c.to));
        continue;
      }
      c.advance(first_bit(non_ascii));
      both -= first_bit(non_ascii);
      if (both < most_step_output) continue;
    }
    // This many steps stay within input and room without further checks.
    for (auto steps = std::max<std::size_t>(both / most_step_output, 1); steps > 0; --steps) {
      const Step step = step_of(c.from, c.to);
      if (step.read == 0) return c;
      c.from += step.read;
      c.to += step.written;
      if (keeps_ascii && byte_at(c.from, 0) < 0x80) break;  // a step ends before `c.end`
    }
  }
  return c;
}

/// The same up to the end of the text: the last bytes are converted from a copy that is padded with zeros. A zero is
/// a character of its own and never part of another one.
template <class StepOf>
ByteCursor convert_by_steps(ByteCursor c, bool keeps_ascii, StepOf step_of) {
  c = convert_by_steps_inside(c, keeps_ascii, step_of);
  if (c.left() >= lookahead) return c;
  std::array<char, 2 * lookahead> padded{};
  std::copy(c.from, c.end, padded.begin());
  for (std::size_t at = 0; c.left() > 0 && c.room() >= most_step_output;) {
    const Step step = step_of(padded.data() + at, c.to);
    if (step.read == 0 || step.read > c.left()) break;  // unknown, or cut by the end of the text
    at += step.read;
    c.from += step.read;
    c.to += step.written;
  }
  return c;
}

}  // namespace ku::i18n::detail
