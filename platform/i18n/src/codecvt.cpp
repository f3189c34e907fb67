#include <ku/i18n/codecvt.hpp>

#include "Decoder.hpp"
#include "Encoder.hpp"
#include "convert_whole.hpp"

#include <algorithm>

namespace ku::i18n {

CvtExceptionBase::~CvtExceptionBase() = default;
const char* CvtExceptionBase::what() const noexcept { return what_; }

CvtInvalidCharacter::CvtInvalidCharacter() noexcept
    : CvtExceptionBase("The text has a character that cannot be converted.") {}
CvtInvalidCharacter::~CvtInvalidCharacter() = default;

codecvt_string_to_ustring::codecvt_string_to_ustring(const std::string& encoding, bool tolerant)
    : decoder_(std::make_unique<detail::Decoder>(detail::Encoding::named(encoding), tolerant)) {}
codecvt_string_to_ustring::~codecvt_string_to_ustring() = default;

std::u16string codecvt_string_to_ustring::convert(const char* bytes, std::size_t count) {
  return detail::convert_whole<char16_t>(*decoder_, bytes, count);
}
conversion_step codecvt_string_to_ustring::convert_some(const char* bytes, std::size_t count, bool last, char16_t* to,
                                                        std::size_t room) {
  return decoder_->convert(bytes, count, last, to, room);
}
bool codecvt_string_to_ustring::has_substituted() const noexcept { return decoder_->has_substituted(); }

codecvt_ustring_to_string::codecvt_ustring_to_string(const std::string& encoding, bool tolerant)
    : encoder_(std::make_unique<detail::Encoder>(detail::Encoding::named(encoding), tolerant)) {}
codecvt_ustring_to_string::~codecvt_ustring_to_string() = default;

std::string codecvt_ustring_to_string::convert(const char16_t* units, std::size_t count) {
  return detail::convert_whole<char>(*encoder_, units, count);
}
conversion_step codecvt_ustring_to_string::convert_some(const char16_t* units, std::size_t count, bool last, char* to,
                                                        std::size_t room) {
  return encoder_->convert(units, count, last, to, room);
}
bool codecvt_ustring_to_string::has_substituted() const noexcept { return encoder_->has_substituted(); }

std::u16string codecvt_ascii_to_ustring::convert(const char* bytes, std::size_t count) const {
  if (std::any_of(bytes, bytes + count, [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; }))
    throw CvtInvalidCharacter();
  return {bytes, bytes + count};
}

}  // namespace ku::i18n
