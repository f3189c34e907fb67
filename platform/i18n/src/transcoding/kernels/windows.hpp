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

/// Appends the bytes of an entry. All four bytes are written; the next character overwrites those that are too many.
inline void put(ByteCursor& c, Entry bytes) {
  std::memcpy(c.to, &bytes, sizeof(bytes));
  c.to += length_of(bytes);
}

// Converts the body of a text by windows, each in one of three ways: ASCII is copied, a window with single characters
// beyond ASCII is copied whole and these are then replaced (`sparse`), a window of another script is converted
// character by character (`dense`).
//
// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      `Kernel::most_read` bytes; the loop ends before there are fewer.
// Writes     `Kernel::most_written` bytes; likewise.
// Stops      where `sparse` or `dense` returns false: in front of a character that the kernel does not know.
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

/// What a step of one character has read and written; nothing if it does not know the character. By value, so that
/// the cursor stays in registers.
struct Step {
  std::size_t read = 0;
  std::size_t written = 0;
};

/// The most that a step reads of its input: a character of up to four bytes, and the byte behind it.
constexpr std::size_t lookahead = 5;
/// The most that it writes of its output.
constexpr std::size_t most_step_output = 8;
static_assert(lookahead <= most_step_output);

/// Writes the bytes of an entry. All four bytes are written; the next character overwrites those that are too many.
inline Step put_entry(std::size_t read, Entry bytes, char* to) {
  std::memcpy(to, &bytes, sizeof(bytes));
  return {read, length_of(bytes)};
}

// Converts by steps of one character, runs of ASCII by blocks between them. `step(from, to)` converts one character.
//
// Invariant  as above.
// Reads      `lookahead` bytes: the loop ends before there are fewer.
// Writes     `most_step_output` bytes, likewise.
template <class StepOf>
ByteCursor convert_by_steps_inside(ByteCursor c, bool keeps_ascii, StepOf step_of) {
  while (c.left() >= lookahead && c.room() >= most_step_output) {
    if (keeps_ascii && c.both() >= ascii_block) {
      const auto non_ascii = copy_block(c.from, c.to);
      c.advance(non_ascii == 0 ? ascii_block : first_bit(non_ascii));
      if (non_ascii == 0) {
        c.advance(copy_long_ascii(c.from, c.both(), c.to));
        continue;
      }
    }
    // So many steps need no look at the ends.
    for (auto steps = std::max<std::size_t>(std::min(c.left(), c.room()) / most_step_output, 1); steps > 0; --steps) {
      const Step step = step_of(c.from, c.to);
      if (step.read == 0) return c;
      c.from += step.read;
      c.to += step.written;
      if (keeps_ascii && byte_at(c.from, 0) < 0x80) break;  // a step ends before `c.end`
    }
  }
  return c;
}

/// The same up to the very end: the last bytes are converted from a copy, with zeros behind them. A zero is a
/// character of its own and no part of another.
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
