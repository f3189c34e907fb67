#pragma once

#include <cstddef>

namespace ku::i18n::detail {

/// The position of a conversion: the rest of the input, and the room left for output.
template <class From, class To>
struct Cursor {
  const From* from;
  const From* end;
  To* to;
  To* limit;

  std::size_t left() const noexcept { return static_cast<std::size_t>(end - from); }
  std::size_t room() const noexcept { return static_cast<std::size_t>(limit - to); }
};

using DecodingCursor = Cursor<char, char16_t>;
using EncodingCursor = Cursor<char16_t, char>;

}  // namespace ku::i18n::detail
