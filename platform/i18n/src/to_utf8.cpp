#include "steps.hpp"

namespace ku::i18n::detail {
namespace {

constexpr std::size_t stretch = 2 * ascii_block;

using Singles = CodeTables::ByByte::Row;

// Few characters that are not ASCII: the text behind each is copied whole, and again behind the next one.
void put_sparse(DirectCursor& c, unsigned others, const Singles& singles) {
  char* to = c.to;
  for (; others != 0; others &= others - 1) {
    const std::size_t at = first_of(others);
    const auto cell = singles[byte_at(c.from, at)];
    std::memcpy(to + at, &cell, sizeof(cell));
    to += CodeTables::length(cell) - 1;
    copy_block(c.from + at + 1, to + at + 1);
    copy_block(c.from + at + 1 + ascii_block, to + at + 1 + ascii_block);
  }
  c.from += stretch;
  c.to = to + stretch;
}

void put_dense(DirectCursor& c, const Singles& singles) {
#pragma GCC unroll 32
  for (std::size_t at = 0; at < stretch; ++at) put(c, singles[byte_at(c.from, at)]);
  c.from += stretch;
}

DirectCursor convert_stretches(DirectCursor c, const Singles& singles) {
  while (c.left() >= 2 * stretch && c.room() >= stretch * sizeof(std::uint32_t)) {
    const auto low = copy_block(c.from, c.to), high = copy_block(c.from + ascii_block, c.to + ascii_block);
    const unsigned others = low | high << ascii_block;
    if (others == 0) {
      c.advance(stretch);
      c.advance(copy_long_run(c.from, c.both(), c.to));
    } else if (are_dense(others)) {
      put_dense(c, singles);
    } else {
      put_sparse(c, others, singles);
    }
  }
  return c;
}

}  // namespace

DirectCursor convert_to_utf8(DirectCursor c, const CodeTables& source) {
  if (source.has_only_singles()) c = convert_stretches(c, source.singles());
  return convert_by_steps(c, [&](DirectCursor& now) {
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
