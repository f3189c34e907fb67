#include "converters/IcuConverter.hpp"

#include "converters/code_pages.hpp"

#include <ku/i18n/codecvt.hpp>

#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <array>
#include <new>

namespace ku::i18n::detail {
namespace {

// The most units that one call of ICU reads or writes. ICU counts the bytes of units in 31 bits.
constexpr std::size_t slice_size = std::size_t{1} << 29;
constexpr std::size_t exchange_size = 4096;

// ICU's PC code pages rotate three controls, as old hardware did. Other programs do not.
constexpr char16_t control_from_icu(char16_t unit) {
  switch (unit) {
    case 0x1C: return 0x1A;
    case 0x7F: return 0x1C;
    case 0x1A: return 0x7F;
    default: return unit;
  }
}

constexpr char16_t control_to_icu(char16_t unit) { return control_from_icu(control_from_icu(unit)); }

// ICU's ISO-2022-KR has the won sign at 5C, where other programs have the backslash. This function is its own
// inverse.
constexpr char16_t exchange_won_sign(char16_t unit) {
  switch (unit) {
    case u'\\': return u'₩';
    case u'₩': return u'\\';
    default: return unit;
  }
}

// Calls `convert` until it returns true, which means that the input of the cursor is converted.
template <class To, class From, class Convert>
std::basic_string<To> convert_whole(const From* from, std::size_t count, Convert convert) {
  std::array<To, 4096> block;
  std::basic_string<To> result;
  result.reserve(count);
  Cursor<From, To> cursor{from, from + count, nullptr, nullptr};
  for (bool done = false; !done;) {
    cursor.to = block.data();
    cursor.limit = block.data() + block.size();
    done = convert(cursor);
    result.append(block.data(), cursor.to);
  }
  return result;
}

}  // namespace

void check(UErrorCode status) {
  if (U_SUCCESS(status)) return;
  switch (status) {
    case U_MEMORY_ALLOCATION_ERROR: throw std::bad_alloc();
    case U_INVALID_CHAR_FOUND:
    case U_TRUNCATED_CHAR_FOUND:
    case U_ILLEGAL_CHAR_FOUND:
    case U_ILLEGAL_ESCAPE_SEQUENCE:
    case U_UNSUPPORTED_ESCAPE_SEQUENCE: throw CvtInvalidCharacter();
    default: throw CvtExceptionBase(u_errorName(status));
  }
}

IcuConverter::IcuConverter(const std::string& name) : IcuConverter(name, 0, stop_decoding, stop_encoding) {}

IcuConverter::IcuConverter(const std::string& name, char16_t substitute)
    : IcuConverter(name, substitute, substitute_input, substitute_output) {
  UErrorCode status = U_ZERO_ERROR;
  substitutes_bytes_ = is_context_free();
  if (substitutes_bytes_) ucnv_setSubstString(converter_.get(), &substitute_, 1, &status);
  check(status);
}

IcuConverter::IcuConverter(const std::string& name, char16_t substitute, UConverterToUCallback decoding,
                           UConverterFromUCallback encoding)
    : spelling_(name), substitute_(substitute) {
  UErrorCode status = U_ZERO_ERROR;
  converter_.reset(open_converter(name, status));
  check(status);
  ucnv_setFallback(converter_.get(), false);
  // ICU's stock callbacks drop default-ignorable characters before they look at anything else.
  ucnv_setToUCallBack(converter_.get(), decoding, this, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter_.get(), encoding, this, nullptr, nullptr, &status);
  check(status);
  if (!decodes_to(0x1A, 0x1C)) return;
  const bool has_won_sign = type() == UCNV_ISO_2022 && decodes_to('\\', u'₩');
  exchange_ = has_won_sign ? Exchange::controls_and_won_sign : Exchange::controls;
}

bool IcuConverter::decodes_to(char byte, char16_t expected) noexcept {
  char16_t unit = 0;
  DecodingCursor c{&byte, &byte + 1, &unit, &unit + 1};
  const bool is_expected = U_SUCCESS(try_decode(c, false)) && unit == expected;
  ucnv_resetToUnicode(converter_.get());
  return is_expected;
}

char16_t IcuConverter::from_icu(char16_t unit) const noexcept {
  return exchange_ == Exchange::controls ? control_from_icu(unit) : exchange_won_sign(control_from_icu(unit));
}

char16_t IcuConverter::to_icu(char16_t unit) const noexcept {
  return exchange_ == Exchange::controls ? control_to_icu(unit) : exchange_won_sign(control_to_icu(unit));
}

bool IcuConverter::is_context_free() const noexcept {
  switch (type()) {
    case UCNV_SBCS:
    case UCNV_DBCS:
    case UCNV_MBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII: return true;
    default: return false;
  }
}

bool IcuConverter::decode(DecodingCursor& c, std::size_t count, bool last) {
  const std::size_t slice = std::min(count, slice_size);
  const bool flush = last && slice == count;
  const UErrorCode status = decode_slice(c, slice, flush);
  if (status == U_BUFFER_OVERFLOW_ERROR) return false;
  check(status);
  return slice == count;
}

bool IcuConverter::encode(EncodingCursor& c, std::size_t count, bool last) {
  const std::size_t slice = std::min(count, exchange_ != Exchange::none ? exchange_size : slice_size);
  const UErrorCode status = encode_slice(c, slice, last && slice == count);
  if (status == U_BUFFER_OVERFLOW_ERROR) return false;
  check(status);
  return slice == count;
}

std::u16string IcuConverter::decode_whole(const char* bytes, std::size_t count) {
  ucnv_resetToUnicode(converter_.get());
  substituted_ = false;
  return convert_whole<char16_t>(bytes, count, [this](DecodingCursor& c) { return decode(c, c.left(), true); });
}

std::string IcuConverter::encode_whole(const char16_t* units, std::size_t count) {
  ucnv_resetFromUnicode(converter_.get());
  substituted_ = false;
  return convert_whole<char>(units, count, [this](EncodingCursor& c) { return encode(c, c.left(), true); });
}

UErrorCode IcuConverter::try_decode(DecodingCursor& c, bool last) {
  ucnv_resetToUnicode(converter_.get());
  return decode_slice(c, c.left(), last);
}

UErrorCode IcuConverter::try_encode(EncodingCursor& c, bool last) {
  ucnv_resetFromUnicode(converter_.get());
  return encode_slice(c, c.left(), last);
}

UErrorCode IcuConverter::decode_slice(DecodingCursor& c, std::size_t slice, bool flush) {
  char16_t* const start = c.to;
  output_ = start;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter_.get(), &c.to, c.to + std::min(c.room(), slice_size), &c.from, c.from + slice, nullptr,
                 flush, &status);
  if (exchange_ != Exchange::none)
    std::transform(start, c.to, start, [this](char16_t unit) { return from_icu(unit); });
  return status;
}

UErrorCode IcuConverter::encode_slice(EncodingCursor& c, std::size_t slice, bool flush) {
  std::array<char16_t, exchange_size> exchanged;
  const char16_t* from = c.from;
  if (exchange_ != Exchange::none) {
    std::transform(from, from + slice, exchanged.begin(), [this](char16_t unit) { return to_icu(unit); });
    from = exchanged.data();
  }
  const char16_t* const start = from;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_fromUnicode(converter_.get(), &c.to, c.to + std::min(c.room(), slice_size), &from, start + slice, nullptr,
                   flush, &status);
  c.from += from - start;
  return status;
}

std::size_t IcuConverter::malformed_length() const noexcept {
  std::array<char, 32> bytes;
  auto length = static_cast<std::int8_t>(bytes.size());
  UErrorCode status = U_ZERO_ERROR;
  ucnv_getInvalidChars(converter_.get(), bytes.data(), &length, &status);
  if (U_FAILURE(status)) return 0;
  return ends_with_ascii(bytes.data(), length) ? 1 : static_cast<std::size_t>(length);
}

// ICU counts a trail byte as a part of the sequence even if lead byte and trail byte together are not a character.
bool IcuConverter::ends_with_ascii(const char* bytes, std::int32_t length) const noexcept {
  const auto is_ascii = [](char byte) { return (byte & 0x80) == 0; };
  return length == 2 && !is_ascii(bytes[0]) && is_ascii(bytes[1]) && type() == UCNV_MBCS &&
         ucnv_getMinCharSize(converter_.get()) == 1;
}

// Called by ICU, through which no exception may pass.
void IcuConverter::record(const Substitution& substitution, UErrorCode* status) noexcept {
  substituted_ = true;
  if (record_ == nullptr) return;
  try {
    record_->push_back(substitution);
  } catch (const std::bad_alloc&) {
    *status = U_MEMORY_ALLOCATION_ERROR;
  }
}

std::size_t IcuConverter::decoding_pending() const noexcept {
  UErrorCode status = U_ZERO_ERROR;
  return static_cast<std::size_t>(ucnv_toUCountPending(converter_.get(), &status));
}

std::size_t IcuConverter::encoding_pending() const noexcept {
  UErrorCode status = U_ZERO_ERROR;
  return static_cast<std::size_t>(ucnv_fromUCountPending(converter_.get(), &status));
}

bool IcuConverter::spell(UConverterFromUnicodeArgs* arguments, UChar32 code, UConverterCallbackReason reason,
                         UErrorCode* status) noexcept try {
  if (reason != UCNV_UNASSIGNED) return false;
  const auto text = spelling_.find(static_cast<char32_t>(code));
  if (text.empty()) return false;
  const char16_t* from = text.data();
  *status = U_ZERO_ERROR;
  ucnv_cbFromUWriteUChars(arguments, &from, from + text.size(), 0, status);
  return true;
} catch (const std::bad_alloc&) {
  *status = U_MEMORY_ALLOCATION_ERROR;
  return true;
}

void U_CALLCONV IcuConverter::stop_encoding(const void* self, UConverterFromUnicodeArgs* arguments, const UChar*,
                                            std::int32_t, UChar32 code, UConverterCallbackReason reason,
                                            UErrorCode* status) {
  auto* const converter = const_cast<IcuConverter*>(static_cast<const IcuConverter*>(self));
  converter->spell(arguments, converter->unmappable(code), reason, status);
}

// ICU calls a second escape or shift irregular if no character is between the two. Other programs read it.
void U_CALLCONV IcuConverter::stop_decoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                                            UConverterCallbackReason reason, UErrorCode* status) {
  if (reason == UCNV_IRREGULAR) *status = U_ZERO_ERROR;
}

void U_CALLCONV IcuConverter::substitute_input(const void* self, UConverterToUnicodeArgs* arguments,
                                               const char* bytes, std::int32_t length,
                                               UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  *status = U_ZERO_ERROR;
  if (reason == UCNV_IRREGULAR) return;  // see stop_decoding
  auto* const converter = const_cast<IcuConverter*>(static_cast<const IcuConverter*>(self));
  const char16_t replacement = 0xFFFD;
  if (reason == UCNV_UNASSIGNED && converter->ends_with_ascii(bytes, length)) {
    --arguments->source;  // the ASCII byte is converted next, as text
    length = 1;
  }
  const auto unit = static_cast<std::size_t>(arguments->target - converter->output_);
  converter->record({unit, static_cast<std::uint32_t>(length), replacement}, status);
  ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

void U_CALLCONV IcuConverter::substitute_output(const void* self, UConverterFromUnicodeArgs* arguments,
                                                const char16_t*, std::int32_t, UChar32 character,
                                                UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  auto* const converter = const_cast<IcuConverter*>(static_cast<const IcuConverter*>(self));
  character = converter->unmappable(character);
  if (converter->spell(arguments, character, reason, status)) return;
  *status = U_ZERO_ERROR;
  converter->record({0, 0, static_cast<char32_t>(character)}, status);
  const char16_t* replacement = &converter->substitute_;
  if (converter->substitutes_bytes_)
    ucnv_cbFromUWriteSub(arguments, 0, status);
  else
    ucnv_cbFromUWriteUChars(arguments, &replacement, replacement + 1, 0, status);
}

}  // namespace ku::i18n::detail
