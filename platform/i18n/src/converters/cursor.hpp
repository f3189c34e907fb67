#pragma once

#include <cstddef>

namespace ku::i18n::detail {

/// Where a conversion stands: what is left of its input, and of the room for its output.
template <class From, class To>
struct Cursor {
  const From* from;
  const From* end;
  To* to;
  To* limit;

  std::size_t left() const noexcept { return static_cast<std::size_t>(end - from); }
  std::size_t room() const noexcept { return static_cast<std::size_t>(limit - to); }
  /// The units that can be taken and placed one for one.
  std::size_t both() const noexcept { return left() < room() ? left() : room(); }
  void advance(std::size_t units) noexcept {
    from += units;
    to += units;
  }
};

using DecodingCursor = Cursor<char, char16_t>;
using EncodingCursor = Cursor<char16_t, char>;

}  // namespace ku::i18n::detail
