#pragma once

#include "cursor.hpp"

namespace ku::i18n::detail {

/// Convert well-formed text and stop at what is not, what is cut off, or what there is no room for.
void decode_utf8(DecodingCursor& cursor);
void encode_utf8(EncodingCursor& cursor);

/// Copies the well-formed text that `from` begins with and returns its length.
std::size_t copy_utf8(const char* from, std::size_t count, char* to);

/// The part of `encode_utf8` that takes eight units below U+0800 at a time; for processors with SSSE3.
void encode_short_utf8_ssse3(EncodingCursor& cursor);

}  // namespace ku::i18n::detail
