#pragma once

#include <string>

namespace qarread {

/// `text`, which is in the process code, for one line on a terminal: control characters, and those that turn the
/// direction of what follows, appear as `\x1B`, `\u0085` or `\u202E`, a backslash as `\x5C`, and bytes that are no
/// text as `\xFF`.
std::string printable(const std::string& text);

}  // namespace qarread
