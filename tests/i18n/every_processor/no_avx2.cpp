// No AVX2, and kernels that must not be called.

#include "transcoding/kernels/avx2/kernels.hpp"

#include <cstdlib>

namespace ku::i18n::detail {

bool has_avx2() noexcept { return false; }

namespace avx2 {

ByteCursor utf8_to_utf8(ByteCursor) noexcept { std::abort(); }
ByteCursor latin1_to_utf8(ByteCursor) noexcept { std::abort(); }
ByteCursor utf8_to_single_byte(ByteCursor, const EncodeRows&) noexcept { std::abort(); }
template <std::endian order>
ByteCursor utf16_to_utf8(ByteCursor) noexcept {
  std::abort();
}
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor) noexcept {
  std::abort();
}
template ByteCursor utf16_to_utf8<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf16_to_utf8<std::endian::big>(ByteCursor) noexcept;
template ByteCursor utf8_to_utf16<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf8_to_utf16<std::endian::big>(ByteCursor) noexcept;

}  // namespace avx2
}  // namespace ku::i18n::detail
