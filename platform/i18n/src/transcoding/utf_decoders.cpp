#include "transcoding/utf_decoders.hpp"

#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/wide.hpp"

namespace ku::i18n::detail {
namespace {

class Utf8Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    while (at < count && !block.is_full()) {
      const char* const from = bytes + at;
      const std::size_t left = count - at;
      auto [code, length] = first_character(from, left);
      const bool malformed = length == 0;
      if (malformed) {
        length = malformed_utf8_length(from, left);
        if (!last && length == left && is_cut_utf8(from, left)) break;
        code = 0xFFFD;
      }
      block.add(offset + at, code, length, malformed);
      at += length;
    }
    return at;
  }
};

template <std::endian order>
class Utf16Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    while (at < count && !block.is_full()) {
      const auto [code, length] = first(bytes + at, count - at, last);
      if (length == 0) break;
      block.add(offset + at, code == malformed ? U'\xFFFD' : code, length, code == malformed);
      at += length;
    }
    return at;
  }

private:
  static constexpr char32_t malformed = 0xFFFFFFFF;

  struct First {
    char32_t code;
    std::size_t length;
  };

  // The first character of the text; length 0 if more bytes are needed.
  static First first(const char* from, std::size_t left, bool last) noexcept {
    if (left < 2) return {malformed, last ? left : 0};
    const char32_t unit = get_wide<char16_t, order>(from);
    if (!is_surrogate(unit)) return {unit, 2};
    if (!is_lead(unit)) return {malformed, 2};
    if (left < 4) return {malformed, last ? left : 0};
    const char32_t trail = get_wide<char16_t, order>(from + 2);
    if (!is_trail(trail)) return {malformed, 2};
    return {pair(unit, trail), 4};
  }
};

template <std::endian order>
class Utf32Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    for (; count - at >= 4 && !block.is_full(); at += 4) {
      const char32_t code = get_wide<char32_t, order>(bytes + at);
      const bool malformed = code > 0x10FFFF || is_surrogate(code);
      block.add(offset + at, malformed ? U'\xFFFD' : code, 4, malformed);
    }
    if (last && count - at < 4 && at < count && !block.is_full()) {
      block.add(offset + at, 0xFFFD, count - at, true);
      at = count;
    }
    return at;
  }
};

}  // namespace

std::unique_ptr<Decoder> make_utf_decoder(Encoding::Form form) {
  using Form = Encoding::Form;
  switch (form) {
    case Form::utf16_little_endian: return std::make_unique<Utf16Decoder<std::endian::little>>();
    case Form::utf16_big_endian: return std::make_unique<Utf16Decoder<std::endian::big>>();
    case Form::utf32_little_endian: return std::make_unique<Utf32Decoder<std::endian::little>>();
    case Form::utf32_big_endian: return std::make_unique<Utf32Decoder<std::endian::big>>();
    default: return std::make_unique<Utf8Decoder>();
  }
}

}  // namespace ku::i18n::detail
