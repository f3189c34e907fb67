#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/kernels.hpp"

#include <algorithm>
#include <cstring>

namespace ku::i18n::detail {
namespace {

// The end of the well-formed whole blocks, or the start of a character that continues after them.
//
// Invariant  everything before `at` is well-formed, except that its last character may be incomplete; `due` has the
//            bits of the missing continuations at the start of the next block.
// Reads      two bytes past a block; the loop ends before there are fewer.
std::size_t find_end_of_valid_blocks(const char* from, std::size_t count) {
  std::size_t at = 0;
  std::uint64_t due = 0;
  for (; at + Utf8Block::bytes_read <= count; at += Utf8Block::size) {
    const Utf8Block block(from + at);
    if (due == 0 && block.is_ascii()) continue;
    if (!block.is_well_formed(due)) break;
  }
  if (due == 0) return at;
  --at;  // in an incomplete character
  while (is_continuation(from[at])) --at;
  return at;
}

// The length of the well-formed text at the start of `from`.
std::size_t find_end_of_valid(const char* from, std::size_t count) {
  std::size_t at = find_end_of_valid_blocks(from, count);
  while (at < count) {
    const auto length = first_character(from + at, count - at).length;
    if (length == 0) break;
    at += length;
  }
  return at;
}

}  // namespace

ByteCursor utf8_to_utf8(ByteCursor c) noexcept {
  constexpr std::size_t cached = 16384;  // validated bytes that are still in the cache when they are copied
  for (std::size_t valid = 1; valid > 0;) {
    valid = find_end_of_valid(c.from, std::min(c.both(), cached));
    if (valid > 0) std::memcpy(c.to, c.from, valid);
    c.advance(valid);
  }
  return c;
}

}  // namespace ku::i18n::detail
