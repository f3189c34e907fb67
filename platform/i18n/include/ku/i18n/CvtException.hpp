#pragma once

#include <exception>
#include <memory>
#include <string>

namespace ku::i18n {

/// Why a conversion, or the making of a converter, failed. Where an encoding is refused, its text names it.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtExceptionBase : public std::exception {
public:
  /// Requires: `what` lives as long as the program.
  explicit CvtExceptionBase(const char* what) noexcept : what_(what) {}
  /// Keeps a copy of the text, up to its first zero byte for `what()`. May raise `std::bad_alloc`.
  explicit CvtExceptionBase(const std::string& what)
      : text_(std::make_shared<const std::string>(what)), what_(text_->c_str()) {}
  /// Copies share the text.
  /// @{
  CvtExceptionBase(const CvtExceptionBase&) = default;
  CvtExceptionBase& operator=(const CvtExceptionBase&) = default;
  /// @}
  ~CvtExceptionBase() override;
  /// Lives as long as the exception or a copy of it.
  const char* what() const noexcept override;

private:
  std::shared_ptr<const std::string> text_;  // null for a constant
  const char* what_;
};

/// Input that a strict converter cannot convert: malformed, cut off, or without a counterpart in the target.
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
