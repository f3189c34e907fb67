#pragma once

#include "converters/IcuConverter.hpp"
#include "transcoding/CodeTables.hpp"

#include <memory>
#include <optional>
#include <string>

namespace ku::i18n::detail {

/// What there is to know of one encoding, asked of ICU once and kept as long as the program.
class Encoding {
public:
  /// The encoding of that name, the local code page for the empty one. Raises `CvtExceptionBase` if it is refused.
  static const Encoding& named(const std::string& name);

  explicit Encoding(const char* canonical_name);

  std::unique_ptr<IcuConverter> make_converter(bool tolerant) const;

  bool is_utf8() const noexcept { return is_utf8_; }
  /// Whether ASCII text has the same bytes in this encoding, wherever it stands.
  bool is_superset_of_ascii() const noexcept { return is_utf8_ || (tables_ && tables_->is_superset_of_ascii()); }
  /// Null unless no character depends on those before it.
  const CodeTables* tables() const noexcept { return tables_ ? &*tables_ : nullptr; }

private:
  std::string name_;
  bool exchanges_controls_ = false;  // ICU's PC code pages exchange 1A, 1C and 7F: we undo it
  char16_t substitute_ = 0;
  bool is_utf8_ = false;
  std::optional<CodeTables> tables_;
};

}  // namespace ku::i18n::detail
