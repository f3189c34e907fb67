#pragma once

#include "transcoding/kernels/Cursor.hpp"
#include "transcoding/kernels/tables.hpp"

#include <bit>

namespace ku::i18n::detail {

// Each converts the start of a text up to the first character that it does not know: malformed, cut off, not in the
// tables, not looked up yet. They may also stop where little room is left: before the last 256 bytes of it. What they
// write is final; bytes behind it, up to the limit, may be overwritten.

ByteCursor utf8_to_utf8(ByteCursor cursor) noexcept;

/// `keeps_ascii`: the code page is a superset of ASCII, and the table has looked that up.
ByteCursor single_byte_to_utf8(ByteCursor cursor, const DecodeNode& root, bool keeps_ascii) noexcept;
ByteCursor multi_byte_to_utf8(ByteCursor cursor, const DecodeNode& root, bool keeps_ascii) noexcept;
ByteCursor utf8_to_code_page(ByteCursor cursor, const EncodeRows& rows, bool keeps_ascii) noexcept;

template <std::endian order>
ByteCursor utf16_to_utf8(ByteCursor cursor) noexcept;
template <std::endian order>
ByteCursor utf8_to_utf16(ByteCursor cursor) noexcept;

}  // namespace ku::i18n::detail
