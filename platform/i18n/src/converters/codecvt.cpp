#include <ku/i18n/codecvt.hpp>

#include "converters/Encoding.hpp"
#include "transcoding/kernels/direct.hpp"

#include <algorithm>

namespace ku::i18n {
namespace {

template <class From, class To>
conversion_step step_of(const detail::Cursor<From, To>& start, const detail::Cursor<From, To>& now, bool done) {
  return {static_cast<std::size_t>(now.from - start.from), static_cast<std::size_t>(now.to - start.to), done};
}

}  // namespace

CvtExceptionBase::~CvtExceptionBase() = default;
const char* CvtExceptionBase::what() const noexcept { return what_; }

CvtInvalidCharacter::CvtInvalidCharacter() noexcept
    : CvtExceptionBase("The text has a character that cannot be converted.") {}
CvtInvalidCharacter::~CvtInvalidCharacter() = default;

detail::CvtBase::CvtBase(const std::string& encoding, bool tolerant)
    : encoding_(Encoding::named(encoding)), tolerant_(tolerant) {}
detail::CvtBase::~CvtBase() = default;

// Not every text needs one, and there are cheaper things to make.
detail::IcuConverter& detail::CvtBase::icu() {
  if (!icu_) icu_ = encoding_.make_converter(tolerant_);
  return *icu_;
}

bool detail::CvtBase::has_substituted() const noexcept { return icu_ && icu_->has_substituted(); }

std::u16string codecvt_string_to_ustring::convert(const char* bytes, std::size_t count) {
  return icu().decode_whole(bytes, count);
}

conversion_step codecvt_string_to_ustring::convert_some(const char* bytes, std::size_t count, bool last, char16_t* to,
                                                        std::size_t room) {
  const detail::DecodingCursor start{bytes, bytes + count, to, to + room};
  auto now = start;
  const bool done = icu().decode(now, count, last);
  return step_of(start, now, done);
}

bool codecvt_string_to_ustring::is_between_characters() const noexcept {
  return !icu_ || !icu_->is_decoding_pending();
}

std::string codecvt_ustring_to_string::convert(const char16_t* units, std::size_t count) {
  return icu().encode_whole(units, count);
}

conversion_step codecvt_ustring_to_string::convert_some(const char16_t* units, std::size_t count, bool last, char* to,
                                                        std::size_t room) {
  const detail::EncodingCursor start{units, units + count, to, to + room};
  auto now = start;
  const bool done = icu().encode(now, count, last);
  return step_of(start, now, done);
}

bool codecvt_ustring_to_string::is_between_characters() const noexcept {
  return !icu_ || !icu_->is_encoding_pending();
}

conversion_step convert_directly(const codecvt_string_to_ustring& source, const codecvt_ustring_to_string& target,
                                 const char* bytes, std::size_t count, char* to, std::size_t room) noexcept {
  const auto& from = source.encoding_;
  const auto& into = target.encoding_;
  const detail::DirectCursor start{bytes, bytes + count, to, to + room};
  auto now = start;
  try {
    if (!source.is_between_characters() || !target.is_between_characters())
      return {0, 0, false};
    else if (from.is_utf8() && into.is_utf8())
      now = copy_utf8(start);
    else if (from.is_utf8() && into.tables())
      now = convert_from_utf8(start, *into.tables());
    else if (from.tables() && into.is_utf8())
      now = convert_to_utf8(start, *from.tables());
    else
      return {0, 0, false};
  } catch (...) {          // there is no memory for more of the tables: ICU has to do without them
    return {0, 0, false};  // not covered: it is tested where nothing is counted
  }                        // not covered: see above
  return step_of(start, now, now.left() == 0);
}

std::u16string codecvt_ascii_to_ustring::convert(const char* bytes, std::size_t count) const {
  if (std::any_of(bytes, bytes + count, [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; }))
    throw CvtInvalidCharacter();
  return {bytes, bytes + count};
}

}  // namespace ku::i18n
