#pragma once

#include <unicode/ucnv.h>

#include <string>

namespace ku::i18n::detail {

/// Registers the tables from codepages/ with ICU. Called once, when the library is loaded.
void add_code_pages(UErrorCode* status);

/// The argument of `open_converter` for an encoding of this name: an ICU converter, or a table from codepages/. The
/// library's own names have precedence; then "CP" and digits name the Windows page of that number, if there is one.
/// Raises `CvtExceptionBase` for an unknown name and for a name with converter options.
std::string find_code_page(const std::string& name);

/// Opens a converter. Returns null if it fails; `status` has the reason.
UConverter* open_converter(const std::string& code_page, UErrorCode& status);

/// The character that the code page writes instead of `code`, which it lacks, according to codepages/; 0 if there is
/// none.
char16_t find_respelling(const std::string& code_page, char32_t code) noexcept;

}  // namespace ku::i18n::detail
