#pragma once

#include <exception>
#include <memory>
#include <string>

namespace ku::i18n {

/// Raised if a conversion fails or a converter cannot be made. If an encoding is refused, the text names it.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtExceptionBase : public std::exception {
public:
  /// Requires: `what` lives as long as the program.
  explicit CvtExceptionBase(const char* what) noexcept : what_(what) {}
  /// Keeps a copy of the text; `what()` ends at its first zero byte. May raise `std::bad_alloc`.
  explicit CvtExceptionBase(const std::string& what)
      : text_(std::make_shared<const std::string>(what)), what_(text_->c_str()) {}
  /// Copies share the text.
  /// @{
  CvtExceptionBase(const CvtExceptionBase&) = default;
  CvtExceptionBase& operator=(const CvtExceptionBase&) = default;
  /// @}
  ~CvtExceptionBase() override;
  /// The text, valid as long as the exception or a copy of it.
  const char* what() const noexcept override;

private:
  std::shared_ptr<const std::string> text_;  // null for a constant
  const char* what_;
};

/// Raised by a strict converter for malformed or truncated input and for a character that the target lacks.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtInvalidCharacter : public CvtExceptionBase {
public:
  CvtInvalidCharacter() noexcept;
  /// Copies share the text.
  /// @{
  CvtInvalidCharacter(const CvtInvalidCharacter&) = default;
  CvtInvalidCharacter& operator=(const CvtInvalidCharacter&) = default;
  /// @}
  ~CvtInvalidCharacter() override;
};

}  // namespace ku::i18n
