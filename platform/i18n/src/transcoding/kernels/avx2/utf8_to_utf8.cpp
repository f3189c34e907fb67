#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/avx2/Utf8Block.hpp"
#include "transcoding/kernels/avx2/kernels.hpp"
#include "transcoding/kernels/avx2/target.hpp"

#include <algorithm>
#include <cstring>

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {
namespace {

// The length of the well-formed blocks at the start of a text. A character that continues after the last block is not
// included.
//
// Invariant  everything before `at` is well-formed, except that its last character may be incomplete; `due` has the
//            bits of the missing continuation bytes. All blocks have the same length, since a block may begin within
//            a character; so their addresses do not depend on earlier blocks, and the processor works on several
//            blocks at once.
// Reads      a block and the bytes after it that it needs; the loop ends before there are fewer.
// Measured   Western 11.7 GB/s, the kernel for all processors 6.1. If each block began with a character: 6.0.
std::size_t length_of_valid_blocks(const char* from, std::size_t count) noexcept {
  std::size_t at = 0;
  std::uint64_t due = 0;
  for (; at + Utf8Block::bytes_read <= count; at += Utf8Block::size) {
    if (due == 0 && is_ascii(from + at)) continue;
    const Utf8Block block(from + at);
    if (!block.is_well_formed(due)) break;
    due = block.due();
  }
  if (due == 0) return at;
  --at;  // in an incomplete character
  while (is_continuation(from[at])) --at;
  return at;
}

}  // namespace

ByteCursor utf8_to_utf8(ByteCursor c) noexcept {
  constexpr std::size_t cached = 16384;  // bytes that are still in the cache when they are copied
  for (std::size_t valid = 1; valid > 0;) {
    valid = length_of_valid_blocks(c.from, std::min(c.both(), cached));
    if (valid > 0) std::memcpy(c.to, c.from, valid);
    c.advance(valid);
  }
  return c;
}

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
