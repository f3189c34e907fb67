#include "transcoding/IcuUnits.hpp"

#include <ku/i18n/CvtException.hpp>

#include <unicode/utf16.h>

#include <algorithm>
#include <utility>

namespace ku::i18n::detail {

static_assert(2 * IcuUnits::most_bytes + 64 <= CharacterBlock::most_added);

IcuUnits::IcuUnits(std::unique_ptr<IcuConverter> icu, bool locates) : icu_(std::move(icu)), locates_(locates) {
  icu_->record_substitutions(malformed_);
}

void IcuUnits::restart() noexcept {
  icu_->restart_decoding();
  lead_.reset();
}

void IcuUnits::decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset, CharacterBlock& block) {
  if (!is_pending()) start_ = offset;
  if (!locates_ || count <= 1) return decode_part(bytes, count, last, offset + count, block);
  for (std::size_t i = 0; i < count; ++i) decode_part(bytes + i, 1, last && i + 1 == count, offset + i + 1, block);
}

// `end` is the offset of the end of the bytes in the whole input.
void IcuUnits::decode_part(const char* bytes, std::size_t count, bool last, std::uint64_t end,
                           CharacterBlock& block) {
  malformed_.clear();
  DecodingCursor c{bytes, bytes + count, units_.data(), units_.data() + units_.size()};
  if (!icu_->decode(c, count, last))
    throw CvtExceptionBase("A converter returned more text than its input can have.");
  end -= icu_->decoding_pending();
  // A byte may show that an earlier one, which looked like a shift, is malformed as well (UTF-7).
  std::uint64_t malformed_bytes = 0;
  for (const auto& sequence : malformed_) malformed_bytes += sequence.length;
  if (locates_) start_ = std::min(start_, end - std::min(end, malformed_bytes));
  auto malformed = malformed_.begin();
  const auto* const units_end = c.to;
  for (const auto* unit = units_.data(); unit != units_end; ++unit) {
    const bool is_last = unit + 1 == units_end;
    if (malformed != malformed_.end() && units_.data() + malformed->unit == unit) {
      add_lone_lead(block);
      const auto length = std::min<std::uint64_t>(malformed->length, end - start_);
      if (is_last && length > 0) start_ = end - length;
      block.add(start_, *unit, length > 0 ? length : end - start_, true);
      start_ = is_last ? end : start_ + length;
      ++malformed;
    } else if (lead_ && U16_IS_TRAIL(*unit)) {
      block.add(lead_->offset, static_cast<char32_t>(U16_GET_SUPPLEMENTARY(lead_->unit, *unit)), end - lead_->offset);
      lead_.reset();
      start_ = end;
    } else {
      add_lone_lead(block);
      if (U16_IS_LEAD(*unit)) {
        lead_ = Lead{*unit, start_, end - start_};
        if (is_last) start_ = end;
      } else {
        block.add(start_, *unit, end - start_);
        if (is_last) start_ = end;
      }
    }
  }
  if (last) add_lone_lead(block);
  if (!is_pending()) start_ = end;  // escapes and shifts belong to no character
}

void IcuUnits::add_lone_lead(CharacterBlock& block) noexcept {
  if (lead_) block.add(lead_->offset, lead_->unit, lead_->length);
  lead_.reset();
}

}  // namespace ku::i18n::detail
