#include "transcoding/IcuEncoder.hpp"

#include "transcoding/kernels/wide.hpp"

#include <algorithm>
#include <utility>

namespace ku::i18n::detail {

IcuEncoder::IcuEncoder(std::unique_ptr<IcuConverter> icu, Losses& losses) : icu_(std::move(icu)), losses_(losses) {
  icu_->record_substitutions(substituted_);
}

char* IcuEncoder::encode(CharacterBlock& block, char* to, char* limit) {
  // One character at a time if losses are located: a substitution then belongs to this character, or to one that ICU
  // has held back.
  const std::size_t most = losses_.are_located() ? 1 : units_.size() / 2;
  while (!is_done_ || !block.is_empty()) {
    if (is_done_) take(block, most);
    to = write(to, limit, false);
    if (!is_done_) break;
  }
  return to;
}

char* IcuEncoder::encode_one(CharacterBlock& block, char* to, char* limit) {
  if (is_done_) take(block, 1);
  return write(to, limit, false);
}

char* IcuEncoder::finish(char* to, char* limit, bool& done) {
  to = write(to, limit, true);
  done = is_done_;
  return to;
}

void IcuEncoder::take(CharacterBlock& block, std::size_t most) {
  const auto* next = block.begin();
  const auto* const end = next + std::min(most, static_cast<std::size_t>(block.end() - next));
  char16_t* unit = units_.data();
  for (; next != end; ++next) {
    if (next->malformed) losses_.note_malformed(*next);
    if (losses_.are_located()) open_.push_back(*next);
    if (next->code > 0xFFFF) *unit++ = lead_of(next->code);
    *unit++ = next->code > 0xFFFF ? trail_of(next->code) : static_cast<char16_t>(next->code);
  }
  block.consume_to(end);
  next_ = units_.data();
  end_ = unit;
}

char* IcuEncoder::write(char* to, char* limit, bool last) {
  EncodingCursor c{next_, end_, to, limit};
  is_done_ = icu_->encode(c, c.left(), last);
  next_ = c.from;
  note_substitutions();
  if (is_done_ && icu_->encoding_pending() == 0) open_.clear();
  return c.to;
}

void IcuEncoder::note_substitutions() {
  for (const auto& substitution : substituted_) {
    const auto place = std::find_if(open_.begin(), open_.end(),
                                    [&](const Character& one) { return one.code == substitution.character; });
    if (place == open_.end()) {
      // Usually because losses are not located. `malformed` is set to prevent a report without a place.
      losses_.note_unmappable({0, substitution.character, 0, true});
    } else {
      losses_.note_unmappable(*place);
      open_.erase(open_.begin(), place + 1);
    }
  }
  substituted_.clear();
}

}  // namespace ku::i18n::detail
