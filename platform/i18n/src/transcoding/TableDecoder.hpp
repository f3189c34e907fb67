#pragma once

#include "transcoding/CodePage.hpp"
#include "transcoding/Decoder.hpp"
#include "transcoding/IcuUnits.hpp"

namespace ku::i18n::detail {

/// Decodes a stateless code page by its table.
class TableDecoder final : public Decoder {
public:
  explicit TableDecoder(const CodePage& page) noexcept : page_(page) {}

  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override;

private:
  std::size_t decode_by_icu(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                            CharacterBlock& block);

  const CodePage& page_;
  std::unique_ptr<IcuUnits> icu_;  // created lazily, for sequences that depend on what follows
};

}  // namespace ku::i18n::detail
