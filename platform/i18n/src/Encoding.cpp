#include "Encoding.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

#include <array>
#include <map>
#include <mutex>
#include <new>
#include <string_view>

namespace ku::i18n::detail {
namespace {

// ICU's stock callbacks drop default-ignorable characters before they look at anything else: these do not.
void U_CALLCONV stop_decoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                              UConverterCallbackReason, UErrorCode*) {}
void U_CALLCONV stop_encoding(const void*, UConverterFromUnicodeArgs*, const UChar*, std::int32_t, UChar32,
                              UConverterCallbackReason, UErrorCode*) {}

bool converts_one(UConverter* converter, char from, char16_t expected) {
  std::array<char16_t, 4> to{};
  UErrorCode status = U_ZERO_ERROR;
  return ucnv_toUChars(converter, to.data(), to.size(), &from, 1, &status) == 1 && U_SUCCESS(status) &&
         to[0] == expected;
}

bool survives(UConverter* converter, char16_t character) {
  std::array<char, 16> bytes{};
  std::array<char16_t, 4> back{};
  UErrorCode status = U_ZERO_ERROR;
  const auto length = ucnv_fromUChars(converter, bytes.data(), bytes.size(), &character, 1, &status);
  return ucnv_toUChars(converter, back.data(), back.size(), bytes.data(), length, &status) == 1 &&
         U_SUCCESS(status) && back[0] == character;
}

// ICU takes far more for a name than an encoding has: options behind a comma, names of converter files.
const char* canonical_name(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  const bool plain = name.find_first_of(std::string_view(",\0", 2)) == std::string::npos;
  const char* const canonical = plain ? ucnv_getAlias(name.c_str(), 0, &status) : nullptr;
  if (canonical == nullptr || U_FAILURE(status) || std::string_view(canonical) == "x11-compound-text")
    throw CvtExceptionBase("There is no converter for the encoding.");
  return canonical;
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

const Encoding& Encoding::named(const std::string& name) {
  static std::mutex mutex;
  static auto& known = *new std::map<std::string, Encoding>;  // referred to until the very end of the program
  const std::string canonical = canonical_name(name.empty() ? ZrLocale::global().encoding() : name);
  const std::lock_guard lock(mutex);
  return known.try_emplace(canonical, canonical.c_str()).first->second;
}

Encoding::Encoding(const char* canonical_name) : name_(canonical_name) {
  const auto converter = open();
  exchanges_controls_ = converts_one(converter.get(), 0x1A, 0x1C) && converts_one(converter.get(), 0x1C, 0x7F) &&
                        converts_one(converter.get(), 0x7F, 0x1A);
  if (survives(converter.get(), 0xFFFD)) substitute_ = 0xFFFD;
}

ConverterHandle Encoding::open() const {
  UErrorCode status = U_ZERO_ERROR;
  ConverterHandle converter(ucnv_open(name_.c_str(), &status));
  check(status);
  ucnv_setFallback(converter.get(), false);
  ucnv_setToUCallBack(converter.get(), stop_decoding, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), stop_encoding, nullptr, nullptr, nullptr, &status);
  check(status);
  return converter;
}

}  // namespace ku::i18n::detail
