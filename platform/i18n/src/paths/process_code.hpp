#pragma once

#include <string>

namespace ku::i18n::detail {

/// Text to and from the process code, the encoding of file names and messages.
std::string to_process_code(const std::u16string& text, bool tolerant);
std::u16string from_process_code(const std::string& text, bool tolerant);

}  // namespace ku::i18n::detail
