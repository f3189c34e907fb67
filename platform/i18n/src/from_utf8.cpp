#include "Utf8Block.hpp"
#include "steps.hpp"
#include "utf8.hpp"

namespace ku::i18n::detail {
namespace {

// Appends what begins at the bits of `starts`, and returns where something begins that the code page has not; or else
// `end`.
template <class CellOf>
std::size_t put_characters(DirectCursor& c, const Utf8Block::Codes& codes, std::uint64_t starts, std::size_t end,
                           CellOf cell_of) {
  DirectCursor now = c;
  for (; starts != 0; starts &= starts - 1) {
    const std::size_t at = first_of(starts);
    const std::uint32_t cell = cell_of(codes[at]);
    if (cell == 0) {
      end = at;
      break;
    }
    put(now, cell);
  }
  c.to = now.to;
  return end;
}

// Dense text goes by blocks, and almost without a branch. Returns whether the code page had all that it came to.
bool convert_dense(DirectCursor& c, const CodeTables& target) {
  while (c.left() >= Utf8Block::sight && c.room() >= Utf8Block::size * sizeof(std::uint32_t)) {
    const Utf8Block block(c.from);
    if ((target.is_superset_of_ascii() && !block.is_dense()) || !block.is_simple()) break;
    const std::size_t length = block.length();
    const std::size_t end = block.has_pairs_at_most()
                                ? put_characters(c, block.decode_pairs(), block.starts(), length,
                                                 [&row = target.units(0)](char16_t unit) { return row[unit]; })
                                : put_characters(c, block.decode(), block.starts(), length,
                                                 [&target](char16_t unit) { return target.unit(unit); });
    c.from += end;
    if (end < length) return false;
  }
  return true;
}

}  // namespace

DirectCursor convert_from_utf8(DirectCursor c, const CodeTables& target) {
  const bool keeps_ascii = target.is_superset_of_ascii();
  return convert_by_steps(c, keeps_ascii, [&](DirectCursor& now) {
    const auto [code, length] = first_short_character(now.from);
    const auto cell = length == 0 ? 0 : target.unit(static_cast<char16_t>(code));
    if (cell == 0) return false;
    now.from += length;
    put(now, cell);
    return (keeps_ascii && byte_at(now.from, 0) < 0x80) || convert_dense(now, target);
  });
}

}  // namespace ku::i18n::detail
