#pragma once

#include <string>

namespace qarread {

/// `text`, which is in the process code, for one line on a terminal: control characters appear as `\x1B` or
/// `\u0085`, a backslash as `\x5C`, and each non-ASCII byte of a text that is not valid as `\xFF`.
std::string printable(const std::string& text);

}  // namespace qarread
