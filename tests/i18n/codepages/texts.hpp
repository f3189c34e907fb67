#pragma once

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <cstdio>
#include <string>

inline std::u16string to_utf16(char32_t code) {
  if (code < 0x10000) return {static_cast<char16_t>(code)};
  return {static_cast<char16_t>(0xD7C0 + (code >> 10)), static_cast<char16_t>(0xDC00 | (code & 0x3FF))};
}

inline std::u32string to_codes(const std::u16string& text) {
  std::u32string codes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = (text[i] & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
    codes += pair ? char32_t{0x10000} + ((text[i] & 0x3FFU) << 10) + (text[i + 1] & 0x3FFU) : char32_t{text[i]};
    if (pair) ++i;
  }
  return codes;
}

inline icu::UnicodeString composed(const std::u16string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString units(text.data(), static_cast<std::int32_t>(text.size()));
  return icu::Normalizer2::getNFCInstance(status)->normalize(units, status);
}

/// Whether two texts are canonically equivalent, like a letter with accents and the letter followed by the accents.
inline bool are_equivalent(const std::u16string& one, const std::u16string& other) {
  return composed(one) == composed(other);
}

/// The number with at least `width` digits.
inline std::string hexadecimal(char32_t number, int width = 4) {
  char text[9];
  std::snprintf(text, sizeof text, "%0*X", width, static_cast<unsigned>(number));
  return text;
}
