#pragma once

#include <unicode/ucnv.h>

#include <string>

namespace ku::i18n::detail {

/// Makes the tables from codepages/ known to ICU. Done once, when the library is loaded.
void add_code_pages(UErrorCode* status);

/// What `open_converter` opens for an encoding of that name: a converter of ICU's, or one of the tables made from
/// codepages/. The library's own names come first; "CP" and digits then name the Windows page of that number, if
/// there is one. Raises `CvtExceptionBase` for a name that neither knows, and for one with converter options.
std::string find_code_page(const std::string& name);

/// Null if it fails, as `status` tells.
UConverter* open_converter(const std::string& code_page, UErrorCode& status);

/// The character that the code page writes for `code`, which it lacks, by its data; 0 if there is none.
char16_t find_respelling(const std::string& code_page, char32_t code) noexcept;

}  // namespace ku::i18n::detail
