#include "transcoding/kernels/steps.hpp"

namespace ku::i18n::detail {
namespace {

using Singles = CodeTables::ByByte::Row;

// Each puts a stretch, or what stands in front of a byte that is no character, and returns whether there is none.

// With few characters that are not ASCII: the text behind each is copied whole, and again behind the next one.
bool put_sparse(DirectCursor& c, unsigned others, const Singles& singles) {
  const char* const from = c.from;
  char* to = c.to;  // of the stretch, moved on by what its characters have grown
  for (; others != 0; others &= others - 1) {
    const std::size_t at = first_of(others);
    const auto cell = singles[byte_at(from, at)];
    if (cell == 0) {
      c.from = from + at;
      c.to = to + at;
      return false;
    }
    std::memcpy(to + at, &cell, sizeof(cell));
    to += CodeTables::length(cell) - 1;
    copy_stretch(from + at + 1, to + at + 1);
  }
  c.from = from + stretch;
  c.to = to + stretch;
  return true;
}

bool put_dense(DirectCursor& c, const Singles& singles) {
  DirectCursor now = c;
  bool known = true;
#pragma GCC unroll 32
  for (std::size_t at = 0; at < stretch; ++at) {
    const auto cell = singles[byte_at(now.from, 0)];
    if (cell == 0) {
      known = false;
      break;
    }
    put(now, cell);
    ++now.from;
  }
  c = now;
  return known;
}

DirectCursor convert_stretches(DirectCursor c, bool keeps_ascii, const Singles& singles) {
  for (bool known = true; known && c.left() >= 2 * stretch && c.room() >= stretch * sizeof(std::uint32_t);) {
    const auto others = copy_stretch(c.from, c.to);
    if (!keeps_ascii || are_dense(others)) {
      known = put_dense(c, singles);
    } else if (others == 0) {
      c.advance(stretch);
      c.advance(copy_long_run(c.from, c.both(), c.to));
    } else {
      known = put_sparse(c, others, singles);
    }
  }
  return c;
}

}  // namespace

DirectCursor convert_to_utf8(DirectCursor c, const CodeTables& source) {
  const bool keeps_ascii = source.is_superset_of_ascii();
  if (source.is_single_byte()) c = convert_stretches(c, keeps_ascii, source.singles());
  return convert_by_steps(c, keeps_ascii, [&](DirectCursor& now) {
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

}  // namespace ku::i18n::detail
