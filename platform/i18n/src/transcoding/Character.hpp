#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ku::i18n::detail {

/// A character that the decoder passes to the encoder.
struct Character {
  std::uint64_t offset;       // offset of its first byte in the whole input
  char32_t code;              // U+FFFD if malformed; may be an unpaired surrogate
  std::uint32_t length : 31;  // number of its bytes in the input
  std::uint32_t malformed : 1;
};

/// The characters that the decoder has delivered and the encoder has not yet consumed.
class CharacterBlock {
public:
  /// A decoder does not begin a sequence if the block has this many characters.
  static constexpr std::size_t full = 1024;

  bool is_full() const noexcept { return end_ >= full; }
  bool is_empty() const noexcept { return next_ == end_; }
  /// Requires: there are fewer than `full` characters, or the decoder has made sure that its characters fit.
  void add(std::uint64_t offset, char32_t code, std::size_t length, bool malformed = false) noexcept {
    characters_[end_++] = {offset, code, static_cast<std::uint32_t>(length) & 0x7FFFFFFF, malformed};
  }
  /// Adds the characters that `write(place)` writes, which returns the place after the last one.
  /// Requires: the block is not full, and they are `most_added` at most.
  template <class Write>
  void add_some(Write write) noexcept {
    end_ = static_cast<std::size_t>(write(characters_.data() + end_) - characters_.data());
  }
  void clear() noexcept {
    next_ = 0;
    end_ = 0;
  }
  std::size_t size() const noexcept { return end_; }
  /// Removes the characters after the first `size`.
  void shrink(std::size_t size) noexcept { end_ = size; }

  const Character* begin() const noexcept { return characters_.data() + next_; }
  const Character* end() const noexcept { return characters_.data() + end_; }
  /// Marks the characters before `place` as consumed.
  void consume_to(const Character* place) noexcept { next_ = static_cast<std::size_t>(place - characters_.data()); }

  /// The most characters that a decoder may add to a block that was not full.
  static constexpr std::size_t most_added = 1536;

private:
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  std::array<Character, full + most_added> characters_;
};

}  // namespace ku::i18n::detail
