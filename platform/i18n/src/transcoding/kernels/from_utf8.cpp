#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/steps.hpp"
#include "transcoding/kernels/utf8.hpp"

namespace ku::i18n::detail {
namespace {

// Each puts a part of the text, or what stands in front of something that the code page has not, and returns whether
// there is nothing like that.

// With few characters that are not ASCII: the text behind each is copied whole, and again behind the next one.
bool put_sparse(DirectCursor& c, std::uint64_t others, const CodeTables& target) {
  const char* const from = c.from;
  std::size_t grown = 0;  // by how much the output is longer than the input; wraps where it is shorter
  std::size_t end = stretch;
  while (others != 0) {
    const std::size_t at = first_of(others);
    const auto [code, length] = first_short_character(from + at);
    const auto cell = length == 0 ? 0 : target.unit(static_cast<char16_t>(code));
    if (cell == 0) {
      c.from = from + at;
      c.to += at + grown;
      return false;
    }
    std::memcpy(c.to + (at + grown), &cell, sizeof(cell));
    grown += CodeTables::length(cell) - length;
    copy_stretch(from + at + length, c.to + (at + length + grown));
    others &= ~std::uint64_t{0} << (at + length);
    end = std::max(end, at + length);
  }
  c.from = from + end;
  c.to += end + grown;
  return true;
}

// The characters that begin at the bits of `starts`.
template <class CellOf>
bool put_characters(DirectCursor& c, const Utf8Block::Codes& codes, std::uint64_t starts, std::size_t length,
                    CellOf cell_of) {
  DirectCursor now = c;
  for (; starts != 0; starts &= starts - 1) {
    const std::size_t at = first_of(starts);
    const std::uint32_t cell = cell_of(codes[at]);
    if (cell == 0) {
      length = at;
      break;
    }
    put(now, cell);
  }
  c.from += length;
  c.to = now.to;
  return starts == 0;
}

// Almost without a branch.
bool put_dense(DirectCursor& c, const CodeTables& target) {
  const Utf8Block block(c.from);
  if (!block.is_simple()) return false;
  const auto put = [&](const Utf8Block::Codes& codes, auto cell_of) {
    return put_characters(c, codes, block.starts(), block.length(), cell_of);
  };
  if (!block.has_pairs_at_most()) return put(block.decode(), [&](char16_t unit) { return target.unit(unit); });
  return put(block.decode_pairs(), [&row = target.units(0)](char16_t unit) { return row[unit]; });
}

DirectCursor convert_parts(DirectCursor c, bool keeps_ascii, const CodeTables& target) {
  constexpr std::size_t room = Utf8Block::size * sizeof(std::uint32_t);
  for (bool known = true; known && c.left() >= Utf8Block::sight + stretch && c.room() >= room;) {
    const auto others = copy_stretch(c.from, c.to);
    if (!keeps_ascii || are_dense(others)) {
      known = put_dense(c, target);
    } else if (others == 0) {
      c.advance(stretch);
      c.advance(copy_long_run(c.from, c.both(), c.to));
    } else {
      known = put_sparse(c, others, target);
    }
  }
  return c;
}

}  // namespace

DirectCursor convert_from_utf8(DirectCursor c, const CodeTables& target) {
  const bool keeps_ascii = target.is_superset_of_ascii();
  return convert_by_steps(convert_parts(c, keeps_ascii, target), keeps_ascii, [&](DirectCursor& now) {
    const auto [code, length] = first_short_character(now.from);
    const auto cell = length == 0 ? 0 : target.unit(static_cast<char16_t>(code));
    if (cell == 0) return false;
    now.from += length;
    put(now, cell);
    return true;
  });
}

}  // namespace ku::i18n::detail
