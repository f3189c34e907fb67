#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace ku::i18n::detail {

/// Finds another spelling for characters that a code page has no code for, without changing the text.
///
/// A character is written as a canonically equivalent sequence (a letter and its accents), or as the one character
/// that a file in codepages/ specifies. No other single character is used: that would be a look-alike.
class Spelling {
public:
  explicit Spelling(const std::string& code_page) : code_page_(code_page) {}

  /// The characters to write instead of `code`; the code page has all of them. Empty if there is no other spelling.
  /// May raise `std::bad_alloc`.
  std::u16string find(char32_t code);

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  bool has_codes(const std::u16string& text);

  const std::string& code_page_;
  std::unique_ptr<UConverter, Close> probe_;  // created lazily
};

}  // namespace ku::i18n::detail
