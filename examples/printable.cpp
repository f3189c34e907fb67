#include "printable.hpp"

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>

#include <cstdio>

namespace qarread {
namespace {

bool isSafe(unsigned code) { return code >= 0x20 && !(code >= 0x7F && code < 0xA0) && code != '\\'; }

template <class Text>
void appendEscape(Text& to, const char* format, unsigned code) {
  char escape[16];
  const int length = std::snprintf(escape, sizeof escape, format, code);
  to.append(escape, escape + length);
}

std::string escapeCharacters(const std::u16string& text) {
  std::u16string result;
  for (const char16_t unit : text) {
    if (isSafe(unit))
      result += unit;
    else
      appendEscape(result, unit < 0x80 ? "\\x%02X" : "\\u%04X", unit);
  }
  return ku::i18n::to_string(result);
}

std::string escapeBytes(const std::string& text) {
  std::string result;
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    if (isSafe(code) && code < 0x80)
      result += byte;
    else
      appendEscape(result, "\\x%02X", code);
  }
  return result;
}

}  // namespace

std::string printable(const std::string& text) {
  try {
    return escapeCharacters(ku::filesystem::detail::process_code_traits::to_internal(text));
  } catch (const ku::i18n::CvtInvalidCharacter&) {
    return escapeBytes(text);
  }
}

}  // namespace qarread
