#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ku::i18n::detail {

/// A character on its way from the decoder to the encoder.
struct Character {
  std::uint64_t offset;       // of its first byte in the whole input
  char32_t code;              // U+FFFD if malformed; may be a lone surrogate
  std::uint32_t length : 31;  // its bytes in the input
  std::uint32_t malformed : 1;
};

/// What the decoder has delivered, as far as the encoder has not consumed it.
class CharacterBlock {
public:
  /// A decoder begins no sequence when the block has that many.
  static constexpr std::size_t full = 1024;

  bool is_full() const noexcept { return end_ >= full; }
  bool is_empty() const noexcept { return next_ == end_; }
  /// Requires: there are less than `full` characters, or the decoder has seen to it that its own fit.
  void add(std::uint64_t offset, char32_t code, std::size_t length, bool malformed = false) noexcept {
    characters_[end_++] = {offset, code, static_cast<std::uint32_t>(length) & 0x7FFFFFFF, malformed};
  }
  /// Adds the characters that `write(place)` writes, which returns the place behind the last one.
  /// Requires: the block is not full, and they are `most_added` at most.
  template <class Write>
  void add_some(Write write) noexcept {
    end_ = static_cast<std::size_t>(write(characters_.data() + end_) - characters_.data());
  }
  void clear() noexcept { next_ = end_ = 0; }
  std::size_t size() const noexcept { return end_; }
  /// Takes back the last characters that were added.
  void shrink(std::size_t size) noexcept { end_ = size; }

  const Character* begin() const noexcept { return characters_.data() + next_; }
  const Character* end() const noexcept { return characters_.data() + end_; }
  /// The encoder has come to there.
  void consume_to(const Character* place) noexcept { next_ = static_cast<std::size_t>(place - characters_.data()); }

  /// The most that a decoder may add after it has found the block not to be full.
  static constexpr std::size_t most_added = 1536;

private:
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  std::array<Character, full + most_added> characters_;
};

}  // namespace ku::i18n::detail
