#pragma once

#include "transcoding/DecodeTable.hpp"
#include "transcoding/EncodeTable.hpp"

namespace ku::i18n::detail {

/// The tables of a stateless code page, kept as long as the program.
struct CodePage {
  explicit CodePage(const Encoding& of) : encoding(of), reading(of), writing(of) {}

  /// Requires: `encoding.form()` is `code_page`.
  static const CodePage& of(const Encoding& encoding);

  const Encoding& encoding;
  DecodeTable reading;
  EncodeTable writing;
};

}  // namespace ku::i18n::detail
