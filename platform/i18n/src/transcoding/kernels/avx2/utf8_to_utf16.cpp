#include "transcoding/kernels/avx2/Utf8Block.hpp"
#include "transcoding/kernels/avx2/kernels.hpp"
#include "transcoding/kernels/avx2/target.hpp"

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {

// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      a block and the bytes after it that it needs; the loop ends before there are fewer.
// Writes     at most two bytes for each byte read; the loop ends before there is less room.
// Measured   Western 5.2 GB/s, the kernel for all processors 1.6; Japanese 3.8 and 2.1; emoji 2.4 and 0.5.
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor c) noexcept {
  while (c.left() >= Utf8Block::bytes_read && c.room() >= Utf8Block::bytes_written) {
    if (is_ascii(c.from)) {
      Utf8Block::widen_ascii<order>(c.from, c.to);
      c.from += Utf8Block::size;
      c.to += 2 * Utf8Block::size;
      continue;
    }
    const Utf8Block block(c.from);
    if (!block.is_well_formed()) break;
    c.from += block.length();
    c.to = block.decode<order>(c.to);
  }
  return c;
}

template ByteCursor utf8_to_utf16<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf8_to_utf16<std::endian::big>(ByteCursor) noexcept;

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
