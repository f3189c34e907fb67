#pragma once

#include "converters/IcuConverter.hpp"

#include <memory>
#include <string>

namespace ku::i18n::detail {

/// The properties of one encoding, determined once from ICU and kept as long as the program.
class Encoding {
public:
  /// The encoding of this name; the empty name is the local code page. Raises `CvtExceptionBase` if it is refused.
  static const Encoding& named(const std::string& name);

  explicit Encoding(const std::string& code_page);

  std::unique_ptr<IcuConverter> make_converter(bool tolerant) const;

  /// How the bytes represent characters.
  enum class Form {
    utf8,
    utf16_little_endian,
    utf16_big_endian,
    utf32_little_endian,
    utf32_big_endian,
    code_page,  // a stateless table of ICU
    other       // stateful, with a signature, or an algorithm
  };
  Form form() const noexcept { return form_; }
  bool is_single_byte() const noexcept { return is_single_byte_; }
  /// Whether its bytes are the numbers of their characters: ISO 8859-1.
  bool is_latin1() const noexcept { return is_latin1_; }
  /// Whether ASCII text has the same bytes in this encoding, at every position.
  bool is_superset_of_ascii() const noexcept { return is_superset_of_ascii_; }
  /// What a tolerant converter writes in place of a character that the encoding lacks.
  char16_t substitute() const noexcept { return substitute_; }

private:
  std::string name_;
  char16_t substitute_ = 0;
  Form form_ = Form::other;
  bool is_single_byte_ = false;
  bool is_latin1_ = false;
  bool is_superset_of_ascii_ = false;
};

}  // namespace ku::i18n::detail
