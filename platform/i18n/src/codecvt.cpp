#include <ku/i18n/codecvt.hpp>

#include "Converter.hpp"
#include "ascii.hpp"
#include "convert_whole.hpp"
#include "utf8.hpp"

#include <algorithm>

namespace ku::i18n {
namespace {

template <class Converter, class From, class To>
conversion_step convert_piece(Converter& converter, const From* from, std::size_t count, bool last, To* to,
                              std::size_t room) {
  typename Converter::Cursor cursor{from, from + count, to, to + room};
  const bool done = converter.convert(cursor, last);
  return {static_cast<std::size_t>(cursor.from - from), static_cast<std::size_t>(cursor.to - to), done};
}

}  // namespace

CvtExceptionBase::~CvtExceptionBase() = default;
const char* CvtExceptionBase::what() const noexcept { return what_; }

CvtInvalidCharacter::CvtInvalidCharacter() noexcept
    : CvtExceptionBase("The text has a character that cannot be converted.") {}
CvtInvalidCharacter::~CvtInvalidCharacter() = default;

codecvt_string_to_ustring::codecvt_string_to_ustring(const std::string& encoding, bool tolerant)
    : decoder_(std::make_unique<detail::Converter<detail::ToUnicode>>(detail::Encoding::named(encoding), tolerant)) {}
codecvt_string_to_ustring::~codecvt_string_to_ustring() = default;

std::u16string codecvt_string_to_ustring::convert(const char* bytes, std::size_t count) {
  return detail::convert_whole<char16_t>(*decoder_, bytes, count);
}
conversion_step codecvt_string_to_ustring::convert_some(const char* bytes, std::size_t count, bool last, char16_t* to,
                                                        std::size_t room) {
  return convert_piece(*decoder_, bytes, count, last, to, room);
}
bool codecvt_string_to_ustring::has_substituted() const noexcept { return decoder_->has_substituted(); }

codecvt_ustring_to_string::codecvt_ustring_to_string(const std::string& encoding, bool tolerant)
    : encoder_(
          std::make_unique<detail::Converter<detail::FromUnicode>>(detail::Encoding::named(encoding), tolerant)) {}
codecvt_ustring_to_string::~codecvt_ustring_to_string() = default;

std::string codecvt_ustring_to_string::convert(const char16_t* units, std::size_t count) {
  return detail::convert_whole<char>(*encoder_, units, count);
}
conversion_step codecvt_ustring_to_string::convert_some(const char16_t* units, std::size_t count, bool last, char* to,
                                                        std::size_t room) {
  return convert_piece(*encoder_, units, count, last, to, room);
}
bool codecvt_ustring_to_string::has_substituted() const noexcept { return encoder_->has_substituted(); }

std::size_t copy_alike(const codecvt_string_to_ustring& source, const codecvt_ustring_to_string& target,
                       const char* bytes, std::size_t count, char* to) {
  const auto& decoder = *source.decoder_;
  const auto& encoder = *target.encoder_;
  if (!decoder.is_between_characters() || !encoder.is_between_characters()) return 0;
  if (decoder.encoding().is_utf8() && encoder.encoding().is_utf8()) return detail::copy_utf8(bytes, count, to);
  if (decoder.encoding().has_ascii() && encoder.encoding().has_ascii()) return detail::copy_ascii(bytes, count, to);
  return 0;
}

std::u16string codecvt_ascii_to_ustring::convert(const char* bytes, std::size_t count) const {
  if (std::any_of(bytes, bytes + count, [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; }))
    throw CvtInvalidCharacter();
  return {bytes, bytes + count};
}

}  // namespace ku::i18n
