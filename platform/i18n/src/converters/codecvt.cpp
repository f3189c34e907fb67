#include <ku/i18n/codecvt.hpp>

#include "converters/Encoding.hpp"

#include <algorithm>

namespace ku::i18n {

CvtExceptionBase::~CvtExceptionBase() = default;
const char* CvtExceptionBase::what() const noexcept { return what_; }

CvtInvalidCharacter::CvtInvalidCharacter() noexcept
    : CvtExceptionBase("The text has a character that cannot be converted.") {}
CvtInvalidCharacter::~CvtInvalidCharacter() = default;

codecvt_string_to_ustring::codecvt_string_to_ustring(const std::string& encoding, bool tolerant)
    : icu_(detail::Encoding::named(encoding).make_converter(tolerant)) {}
codecvt_string_to_ustring::~codecvt_string_to_ustring() = default;

std::u16string codecvt_string_to_ustring::convert(const char* bytes, std::size_t count) {
  return icu_->decode_whole(bytes, count);
}

codecvt_ustring_to_string::codecvt_ustring_to_string(const std::string& encoding, bool tolerant)
    : icu_(detail::Encoding::named(encoding).make_converter(tolerant)) {}
codecvt_ustring_to_string::~codecvt_ustring_to_string() = default;

std::string codecvt_ustring_to_string::convert(const char16_t* units, std::size_t count) {
  return icu_->encode_whole(units, count);
}

std::u16string codecvt_ascii_to_ustring::convert(const char* bytes, std::size_t count) const {
  if (std::any_of(bytes, bytes + count, [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; }))
    throw CvtInvalidCharacter();
  return {bytes, bytes + count};
}

}  // namespace ku::i18n
