#pragma once

#include "transcoding/kernels/Cursor.hpp"
#include "transcoding/kernels/tables.hpp"

#include <bit>

namespace ku::i18n::detail {

/// Whether the processor has AVX2 and the bit operations that these kernels need.
bool has_avx2() noexcept;

/// Kernels that use registers of 32 bytes and move bytes by shuffles. Each converts the start of a text and stops at
/// characters that it cannot convert, and near the end of the text or of the room. The kernel for all processors
/// converts the rest.
namespace avx2 {

ByteCursor utf8_to_utf8(ByteCursor cursor) noexcept;
ByteCursor latin1_to_utf8(ByteCursor cursor) noexcept;
/// Requires: the code page is a single-byte superset of ASCII.
ByteCursor utf8_to_single_byte(ByteCursor cursor, const EncodeRows& rows) noexcept;

template <std::endian order>
ByteCursor utf16_to_utf8(ByteCursor cursor) noexcept;
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor cursor) noexcept;

}  // namespace avx2
}  // namespace ku::i18n::detail
