#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace ku::i18n::detail {

/// The whole of a text through a converter, from its start state.
template <class To, class From, class Converter>
std::basic_string<To> convert_whole(Converter& converter, const From* from, std::size_t count) {
  std::array<To, 4096> block;
  std::basic_string<To> result;
  result.reserve(count);
  converter.reset();
  typename Converter::Cursor cursor{from, from + count, nullptr, nullptr};
  for (bool done = false; !done;) {
    cursor.to = block.data();
    cursor.limit = block.data() + block.size();
    done = converter.convert(cursor, true);
    result.append(block.data(), cursor.to);
  }
  return result;
}

}  // namespace ku::i18n::detail
