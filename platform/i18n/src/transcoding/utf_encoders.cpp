#include "transcoding/utf_encoders.hpp"

#include "transcoding/each_character.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/wide.hpp"

namespace ku::i18n::detail {
namespace {

// Writes characters by `Form::put(code, to)`, which returns the number of bytes written, up to four. Unpaired
// surrogates become U+FFFD; UTF encodings have all other characters.
template <class Form>
class UtfEncoder final : public Encoder {
public:
  explicit UtfEncoder(Losses& losses) noexcept : losses_(losses) {}

  char* encode(CharacterBlock& block, char* to, char* limit) override {
    return encode_each(block, to, limit, 4, losses_, [this](const Character& character, char* at) {
      char32_t code = character.code;
      if (is_surrogate(code)) {
        losses_.note_unmappable(character);
        code = 0xFFFD;
      }
      return at + Form::put(code, at);
    });
  }

private:
  Losses& losses_;
};

struct Utf8 {
  static std::size_t put(char32_t code, char* to) noexcept { return put_utf8(code, to); }
};

template <std::endian order>
struct Utf16 {
  static std::size_t put(char32_t code, char* to) noexcept {
    if (code < 0x10000) {
      put_wide<char16_t, order>(static_cast<char16_t>(code), to);
      return 2;
    }
    put_wide<char16_t, order>(lead_of(code), to);
    put_wide<char16_t, order>(trail_of(code), to + 2);
    return 4;
  }
};

template <std::endian order>
struct Utf32 {
  static std::size_t put(char32_t code, char* to) noexcept {
    put_wide<char32_t, order>(code, to);
    return 4;
  }
};

}  // namespace

std::unique_ptr<Encoder> make_utf_encoder(Encoding::Form form, Losses& losses) {
  using Form = Encoding::Form;
  switch (form) {
    case Form::utf16_little_endian: return std::make_unique<UtfEncoder<Utf16<std::endian::little>>>(losses);
    case Form::utf16_big_endian: return std::make_unique<UtfEncoder<Utf16<std::endian::big>>>(losses);
    case Form::utf32_little_endian: return std::make_unique<UtfEncoder<Utf32<std::endian::little>>>(losses);
    case Form::utf32_big_endian: return std::make_unique<UtfEncoder<Utf32<std::endian::big>>>(losses);
    default: return std::make_unique<UtfEncoder<Utf8>>(losses);
  }
}

}  // namespace ku::i18n::detail
