#include "transcoding/TableEncoder.hpp"

#include <cstring>

namespace ku::i18n::detail {

TableEncoder::TableEncoder(const CodePage& page, Losses& losses)
    : page_(page), losses_(losses), substitute_(page.writing.find(page.encoding.substitute())) {}

char* TableEncoder::encode(CharacterBlock& block, char* to, char* limit) {
  constexpr std::size_t most = 8;
  for (;;) {
    if (!is_between_characters()) to = encode_by_icu(block, to, limit);
    if (!is_between_characters()) return to;  // needs more characters or more room
    const Character* next = block.begin();
    bool is_dependent = false;
    for (; next != block.end() && static_cast<std::size_t>(limit - to) >= most; ++next) {
      const Entry entry = page_.writing.find(next->code);
      is_dependent = entry < 0 && kind_of(entry) == Kind::dependent;
      if (is_dependent) break;
      if (next->malformed) losses_.note_malformed(*next);
      const bool is_unmappable = entry < 0 && kind_of(entry) == Kind::unmappable;
      if (is_unmappable) losses_.note_unmappable(*next);
      to = put(is_unmappable ? substitute_ : entry, to);
    }
    block.consume_to(next);
    if (!is_dependent) return to;
    to = encode_by_icu(block, to, limit);
  }
}

char* TableEncoder::finish(char* to, char* limit, bool& done) {
  if (icu_) return icu_->finish(to, limit, done);
  done = true;
  return to;
}

// Lets ICU encode characters until it holds none back, or has no more room or characters.
char* TableEncoder::encode_by_icu(CharacterBlock& block, char* to, char* limit) {
  if (!icu_) icu_ = std::make_unique<IcuEncoder>(page_.encoding.make_converter(true), losses_);
  while (!icu_->is_done() || !block.is_empty()) {
    to = icu_->encode_one(block, to, limit);
    if (!icu_->is_done() || icu_->is_between_characters()) break;
  }
  return to;
}

inline char* TableEncoder::put(Entry entry, char* to) const noexcept {
  if (entry > 0) {
    std::memcpy(to, &entry, sizeof(entry));
    return to + length_of(entry);
  }
  const std::uint64_t bytes = page_.writing.rows().long_code(value_of(entry));
  std::memcpy(to, &bytes, sizeof(bytes));
  return to + (bytes >> 56);
}

}  // namespace ku::i18n::detail
