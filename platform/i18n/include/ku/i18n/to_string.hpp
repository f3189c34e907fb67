#pragma once

#include <string>

namespace ku::i18n {

/// `text` in the process code, for a person to read.
///
/// The process code is the encoding of file names and messages: that of the environment's locale, asked once;
/// UTF-8 if the environment names none or one that the converters do not know. What it cannot express is replaced
/// by a visible character, so the result is never to be used as a path. Raises `std::bad_alloc` only.
/// May be called by any thread at any time.
[[gnu::visibility("default")]] std::string to_string(const std::u16string& text);

}  // namespace ku::i18n
