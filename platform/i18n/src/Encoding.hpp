#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace ku::i18n::detail {

struct CloseConverter {
  void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using ConverterHandle = std::unique_ptr<UConverter, CloseConverter>;

/// Raises what a failed ICU status stands for: `std::bad_alloc`, `CvtInvalidCharacter` or `CvtExceptionBase`.
void check(UErrorCode status);

/// What there is to know of one encoding, asked of ICU once and kept as long as the program.
class Encoding {
public:
  /// The encoding of that name, the local code page for the empty one. Raises `CvtExceptionBase` if it is refused.
  static const Encoding& named(const std::string& name);

  explicit Encoding(const char* canonical_name);

  const std::string& name() const noexcept { return name_; }
  /// A new converter that stops at what it cannot convert and takes no look-alikes.
  ConverterHandle open() const;
  /// ICU's PC code pages exchange 1A, 1C and 7F; this library undoes that.
  bool exchanges_controls() const noexcept { return exchanges_controls_; }
  /// What the tolerant encoder puts in place of a character that the encoding lacks.
  char16_t substitute() const noexcept { return substitute_; }

private:
  std::string name_;
  bool exchanges_controls_ = false;
  char16_t substitute_ = u'?';
};

}  // namespace ku::i18n::detail
