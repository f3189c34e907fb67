#pragma once

#include "transcoding/Decoder.hpp"
#include "transcoding/IcuUnits.hpp"

#include <algorithm>

namespace ku::i18n::detail {

/// Decodes by ICU: for stateful encodings and encodings with signatures or their own algorithms.
class IcuDecoder final : public Decoder {
public:
  IcuDecoder(std::unique_ptr<IcuConverter> icu, bool locates) : units_(std::move(icu), locates) {}

  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    do {
      const std::size_t next = std::min(count - at, IcuUnits::most_bytes);
      units_.decode(bytes + at, next, last && at + next == count, offset + at, block);
      at += next;
    } while (at < count && !block.is_full());
    return at;
  }

private:
  IcuUnits units_;
};

}  // namespace ku::i18n::detail
