#pragma once

#include <string>

namespace qarread {

/// Escapes `text`, which is in the process code, for one line on a terminal. Control characters, and characters that
/// change the direction of text, become `\x1B`, `\u0085` or `\u202E`; a backslash becomes `\x5C`; a byte that is not
/// valid text becomes `\xFF`.
std::string printable(const std::string& text);

}  // namespace qarread
