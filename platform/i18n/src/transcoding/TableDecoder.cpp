#include "transcoding/TableDecoder.hpp"

#include "transcoding/kernels/utf8.hpp"

#include <cstring>

namespace ku::i18n::detail {
namespace {

// The character of an entry, which has up to three bytes of UTF-8.
char32_t code_of(Entry bytes) {
  char text[4];
  std::memcpy(text, &bytes, sizeof(text));
  return first_short_character(text).code;
}

}  // namespace

std::size_t TableDecoder::decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                                 CharacterBlock& block) {
  std::size_t at = 0;
  while (at < count && !block.is_full()) {
    auto [entry, length] = page_.reading.find({bytes + at, count - at});
    if (entry > 0) {
      block.add(offset + at, code_of(entry), length);
    } else if (kind_of(entry) == Kind::supplementary) {
      block.add(offset + at, value_of(entry), length);
    } else if (kind_of(entry) == Kind::malformed) {
      length = value_of(entry);
      block.add(offset + at, 0xFFFD, length, true);
    } else {
      length = decode_by_icu(bytes + at, count - at, last, offset + at, block);
      if (length == 0) break;
    }
    at += length;
  }
  return at;
}

// Lets ICU decode bytes until a character is complete, and returns their number; 0 if more bytes are needed.
std::size_t TableDecoder::decode_by_icu(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                                        CharacterBlock& block) {
  if (!icu_) icu_ = std::make_unique<IcuUnits>(page_.encoding.make_converter(true), true);
  icu_->restart();
  const auto before = block.size();
  for (std::size_t length = 0; length < count; ++length) {
    icu_->decode(bytes + length, 1, last && length + 1 == count, offset + length, block);
    if (block.size() == before) continue;
    const Character& first = *(block.end() - (block.size() - before));
    if (first.malformed) {
      block.shrink(before + 1);  // bytes after it that ICU has decoded as well are decoded again, with their places
      return first.length;
    }
    if (!icu_->is_pending()) return length + 1;
  }
  if (last) return count;
  block.shrink(before);
  return 0;
}

}  // namespace ku::i18n::detail
