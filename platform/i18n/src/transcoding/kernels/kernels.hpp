#pragma once

#include "transcoding/kernels/Cursor.hpp"
#include "transcoding/kernels/tables.hpp"

#include <bit>

namespace ku::i18n::detail {

// Each kernel converts text until the first character that it cannot convert: malformed, truncated, not in the
// tables, or not looked up yet. It may also stop if fewer than 256 bytes of room are left. Its output is final; bytes
// after it, up to the limit, may be overwritten.

ByteCursor utf8_to_utf8(ByteCursor cursor) noexcept;

/// `keeps_ascii`: whether the code page is a superset of ASCII.
ByteCursor single_byte_to_utf8(ByteCursor cursor, const DecodeNode& root, bool keeps_ascii) noexcept;
ByteCursor multi_byte_to_utf8(ByteCursor cursor, const DecodeNode& root, bool keeps_ascii) noexcept;
ByteCursor utf8_to_code_page(ByteCursor cursor, const EncodeRows& rows, bool keeps_ascii) noexcept;

template <std::endian order>
ByteCursor utf16_to_utf8(ByteCursor cursor) noexcept;
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor cursor) noexcept;

}  // namespace ku::i18n::detail
