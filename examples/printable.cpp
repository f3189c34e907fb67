#include "printable.hpp"

#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <cstdio>

namespace qarread {
namespace {

bool isSafe(unsigned code) {
  const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
  const bool changesDirection = code == 0x200E || code == 0x200F || code == 0x061C ||
                                (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
  return !isControl && !changesDirection && code != '\\';
}

void appendEscape(std::u16string& to, const char* format, unsigned code) {
  char escape[16];
  const int length = std::snprintf(escape, sizeof escape, format, code);
  to.append(escape, escape + length);
}

}  // namespace

std::string printable(const std::string& text) {
  std::u16string result;
  bool isPair = false;  // whether the last unit was the first one of a surrogate pair
  for (const char16_t unit : Korvane::qardatainterfaces::QARPath::fromNative(text)) {
    if (!isPair && unit >= 0xDC00 && unit <= 0xDCFF)
      appendEscape(result, "\\x%02X", unit & 0xFFU);
    else if (isSafe(unit))
      result += unit;
    else
      appendEscape(result, unit < 0x80 ? "\\x%02X" : "\\u%04X", unit);
    isPair = unit >= 0xD800 && unit < 0xDC00;
  }
  return ku::i18n::to_string(result);
}

}  // namespace qarread
