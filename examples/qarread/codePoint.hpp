#pragma once

#include <cstdio>
#include <string>

namespace qarread {

/// The code point in the form "U+20AC".
inline std::string codePoint(char32_t character) {
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(character));
  return text;
}

}  // namespace qarread
