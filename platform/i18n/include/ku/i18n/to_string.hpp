#pragma once

#include <string>

namespace ku::i18n {

/// Converts `text` to the process code, for display.
///
/// The process code is the encoding of file names and messages. It is the encoding of the environment's locale (see
/// `ZrLocale`), determined once, or UTF-8 if the converters do not know that encoding. A character that it lacks is
/// replaced with a visible character, so never use the result as a path. Raises only `std::bad_alloc`.
/// Any thread may call it at any time.
[[gnu::visibility("default")]] std::string to_string(const std::u16string& text);

}  // namespace ku::i18n
