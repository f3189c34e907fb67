#pragma once

#include "transcoding/Character.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace ku::i18n::detail {

class Encoding;

/// Bytes of one encoding to characters, one U+FFFD for each malformed sequence.
class Decoder {
public:
  /// `locates`: the places of characters in the input are wanted. Only the decoders on ICU save work if not.
  static std::unique_ptr<Decoder> make(const Encoding& encoding, bool locates);
  virtual ~Decoder() = default;

  /// Adds the characters of the text that goes on with these bytes to `block`, until that is full, and returns how
  /// many bytes were consumed. If `last`, the text ends with them; if not, a character that they cut may be left
  /// unconsumed. `offset` is the place of the first byte in the whole input. Requires: the block is not full.
  virtual std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                             CharacterBlock& block) = 0;

  /// Whether it holds nothing of a character that is not complete, nor a state that others would have to know.
  virtual bool is_between_characters() const noexcept { return true; }
};

}  // namespace ku::i18n::detail
