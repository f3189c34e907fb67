#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace ku::i18n::detail {

/// The whole of a text through a decoder or an encoder, from its start state.
template <class To, class Converter, class From>
std::basic_string<To> convert_whole(Converter& converter, const From* from, std::size_t count) {
  std::array<To, 4096> buffer;
  std::basic_string<To> result;
  result.reserve(count);
  converter.reset();
  for (bool done = false; !done;) {
    const auto step = converter.convert(from, count, true, buffer.data(), buffer.size());
    result.append(buffer.data(), step.placed);
    from += step.taken;
    count -= step.taken;
    done = step.done;
  }
  return result;
}

}  // namespace ku::i18n::detail
