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

/// UTF-16 as a converter of ICU's delivers it, on its way into a block of characters.
class IcuUnits {
public:
  /// What one call may consume, so that `CharacterBlock::most_added` characters hold its result: no converter makes
  /// more than two units of a byte, and few bytes are held back from one call to the next.
  static constexpr std::size_t most_bytes = 512;

  /// `locates`: see `Decoder::make`.
  IcuUnits(std::unique_ptr<IcuConverter> icu, bool locates);

  /// Decodes these bytes, at most `most_bytes`, which are at `offset` in the whole input. If it locates, byte by
  /// byte: what ICU tells of places depends on where a text is cut.
  void decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset, CharacterBlock& block);
  /// The start of a new text.
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
  std::optional<Lead> lead_;  // the first half of a pair, whose second half comes with the next bytes
  std::uint64_t start_ = 0;   // of the bytes that have not become characters yet
  std::vector<IcuConverter::Substitution> malformed_;
  std::array<char16_t, CharacterBlock::most_added> units_;
};

}  // namespace ku::i18n::detail
