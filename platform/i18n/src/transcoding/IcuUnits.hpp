#pragma once

#include "converters/IcuConverter.hpp"
#include "transcoding/Character.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ku::i18n::detail {

/// Converts the UTF-16 output of an ICU converter to a block of characters.
class IcuUnits {
public:
  /// The most bytes that one call may consume. The result then fits in `CharacterBlock::most_added` characters, since
  /// no converter makes more than two units of a byte, and few bytes are held back between calls.
  static constexpr std::size_t most_bytes = 512;

  /// `locates`: see `Decoder::make`.
  IcuUnits(std::unique_ptr<IcuConverter> icu, bool locates);

  /// Decodes at most `most_bytes` bytes, which are at `offset` in the whole input. If `locates`, it decodes byte by
  /// byte, since the positions that ICU reports depend on how the text is split.
  void decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset, CharacterBlock& block);
  /// Begins a new text.
  void restart() noexcept;
  bool is_pending() const noexcept { return lead_ || icu_->decoding_pending() != 0; }

private:
  struct Lead {
    char16_t unit;
    std::uint64_t offset;
    std::uint64_t length;
  };
  void decode_part(const char* bytes, std::size_t count, bool last, std::uint64_t end, CharacterBlock& block);
  void add_lone_lead(CharacterBlock& block) noexcept;

  std::unique_ptr<IcuConverter> icu_;
  bool locates_;
  std::optional<Lead> lead_;  // a high surrogate whose low surrogate comes with the next bytes
  std::uint64_t start_ = 0;   // offset of the first byte that has not yet become a character
  std::vector<IcuConverter::Substitution> malformed_;
  std::array<char16_t, CharacterBlock::most_added> units_;
};

}  // namespace ku::i18n::detail
