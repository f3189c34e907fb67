#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/kernels.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/windows.hpp"

namespace ku::i18n::detail {
namespace {

// Converts windows of UTF-8 whose characters have at most three bytes, and have entries.
class Utf8Windows {
public:
  static constexpr std::size_t most_read = Utf8Block::bytes_read + window_size;
  static constexpr std::size_t most_written = Utf8Block::size * sizeof(Entry);

  explicit Utf8Windows(const EncodeRows& rows) noexcept : rows_(rows) {}

  // A window with few characters beyond ASCII.
  //
  // Invariant  the window has been copied as if all of it were ASCII; the output before the lowest bit of `non_ascii`
  //            is final.
  // Reads      up to a window after the character that ends after the window.
  // Writes     at most three bytes for each character, and a window after the last one.
  bool sparse(ByteCursor& c, std::uint64_t non_ascii) const noexcept {
    const char* const from = c.from;
    std::ptrdiff_t growth = 0;  // the length of the output minus that of the input, which may be negative
    const auto output_at = [&](std::size_t at) { return c.to + (static_cast<std::ptrdiff_t>(at) + growth); };
    std::size_t end = window_size;
    while (non_ascii != 0) {
      const std::size_t at = first_bit(non_ascii);
      const auto [code, length] = first_short_character(from + at);
      const Entry bytes = length == 0 ? 0 : rows_.entry(code);
      if (bytes <= 0) {
        c.from = from + at;
        c.to = output_at(at);
        return false;
      }
      std::memcpy(output_at(at), &bytes, sizeof(bytes));
      growth += static_cast<std::ptrdiff_t>(length_of(bytes)) - static_cast<std::ptrdiff_t>(length);
      copy_window(from + at + length, output_at(at + length));
      non_ascii &= ~std::uint64_t{0} << (at + length);
      end = std::max(end, at + length);
    }
    c.from = from + end;
    c.to = output_at(end);
    return true;
  }

  // A block of another script, with few branches.
  bool dense(ByteCursor& c) const noexcept {
    const Utf8Block block(c.from);
    if (!block.is_simple()) return false;
    if (!block.has_pairs_at_most())
      return put_characters(c, block, block.decode(), [&](char16_t code) { return rows_.entry(code); });
    return put_characters(c, block, block.decode_pairs(),
                          [&row = rows_.row(0)](char16_t code) { return row[code].load(std::memory_order_acquire); });
  }

private:
  // Writes the characters that begin in the block.
  //
  // Invariant  `codes` has the character that begins at each byte; those before the lowest bit of `starts` have been
  //            written.
  // Writes     at most three bytes for each, and one byte after the last one.
  template <class EntryOf>
  static bool put_characters(ByteCursor& c, const Utf8Block& block, const Utf8Block::Codes& codes,
                             EntryOf entry_of) noexcept {
    ByteCursor now = c;
    std::size_t length = block.length();
    std::uint64_t starts = block.starts();
    for (; starts != 0; starts &= starts - 1) {
      const std::size_t at = first_bit(starts);
      const Entry bytes = entry_of(codes[at]);
      if (bytes <= 0) {
        length = at;
        break;
      }
      put(now, bytes);
    }
    c.from += length;
    c.to = now.to;
    return starts == 0;
  }

  const EncodeRows& rows_;
};

}  // namespace

const EncodeRows::Row EncodeRows::none{};

// Everything in one function keeps the cursor in registers.
[[gnu::flatten]] ByteCursor utf8_to_code_page(ByteCursor c, const EncodeRows& rows, bool keeps_ascii) noexcept {
  c = convert_windows(c, keeps_ascii, Utf8Windows(rows));
  return convert_by_steps(c, keeps_ascii, [&rows](const char* from, char* to) {
    const auto [code, length] = first_whole_character(from);
    if (length == 0) return Step{};
    const Entry bytes = rows.entry(code);
    if (bytes > 0) return put_entry(length, bytes, to);
    if (bytes == 0 || kind_of(bytes) != Kind::long_code) return Step{};
    const std::uint64_t all = rows.long_code(value_of(bytes));
    std::memcpy(to, &all, sizeof(all));
    return Step{length, all >> 56};
  });
}

}  // namespace ku::i18n::detail
