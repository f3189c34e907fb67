#pragma once

#include "converters/cursor.hpp"
#include "transcoding/CodeTables.hpp"

namespace ku::i18n::detail {

/// From bytes to bytes without a way through UTF-16.
using DirectCursor = Cursor<char, char>;

// Each converts the start of a text up to the first character that it does not know: malformed, cut off, not in the
// tables. They may also stop where little room is left.

DirectCursor copy_utf8(DirectCursor cursor);
DirectCursor convert_to_utf8(DirectCursor cursor, const CodeTables& source);
DirectCursor convert_from_utf8(DirectCursor cursor, const CodeTables& target);

}  // namespace ku::i18n::detail
