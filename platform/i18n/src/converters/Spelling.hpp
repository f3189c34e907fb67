#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace ku::i18n::detail {

/// How a code page writes characters that it has no code for, without changing the text.
///
/// A character is written as the characters that it is canonically equivalent to (a letter and its accents), or as
/// the one that codepages/ names for it. A single character for another one is otherwise no spelling but a
/// look-alike.
class Spelling {
public:
  explicit Spelling(const std::string& code_page) : code_page_(code_page) {}

  /// The characters to write in place of `code`, all of which the code page has. Empty if there are none.
  /// May raise `std::bad_alloc`.
  std::u16string find(char32_t code);

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  bool has_codes(const std::u16string& text);

  const std::string& code_page_;
  std::unique_ptr<UConverter, Close> probe_;  // made when it is first needed
};

}  // namespace ku::i18n::detail
