#pragma once

#include "transcoding/Character.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace ku::i18n::detail {

class Encoding;

/// Converts bytes of one encoding to characters, with one U+FFFD for each malformed sequence.
class Decoder {
public:
  /// `locates`: whether the offsets of characters in the input are needed. If not, decoders on ICU do less work.
  static std::unique_ptr<Decoder> make(const Encoding& encoding, bool locates);
  virtual ~Decoder() = default;

  /// Decodes the next bytes of the text, adds the characters to `block` until it is full, and returns the number of
  /// bytes consumed. `last` says that the text ends with these bytes; otherwise an incomplete character at their end
  /// may be left unconsumed. `offset` is that of the first byte in the whole input. Requires: the block is not full.
  virtual std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                             CharacterBlock& block) = 0;

  /// Whether it holds no part of a character, and no state that another decoder would need.
  virtual bool is_between_characters() const noexcept { return true; }
};

}  // namespace ku::i18n::detail
