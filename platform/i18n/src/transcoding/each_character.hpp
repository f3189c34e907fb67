#pragma once

#include "transcoding/Character.hpp"
#include "transcoding/Losses.hpp"

#include <cstddef>

namespace ku::i18n::detail {

/// Writes characters of the block by `write(character, to)`, which returns the end of its output, while there is room
/// for `most` bytes.
template <class Write>
char* encode_each(CharacterBlock& block, char* to, char* limit, std::size_t most, Losses& losses, Write write) {
  const Character* next = block.begin();
  for (; next != block.end() && static_cast<std::size_t>(limit - to) >= most; ++next) {
    if (next->malformed) losses.note_malformed(*next);
    to = write(*next, to);
  }
  block.consume_to(next);
  return to;
}

}  // namespace ku::i18n::detail
