#pragma once

#include <exception>

namespace ku::i18n {

/// Why a conversion, or the making of a converter, failed. Its text is a constant.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtExceptionBase : public std::exception {
public:
  /// Requires: `what` lives as long as the program.
  explicit CvtExceptionBase(const char* what) noexcept : what_(what) {}
  /// Copies share the text.
  /// @{
  CvtExceptionBase(const CvtExceptionBase&) = default;
  CvtExceptionBase& operator=(const CvtExceptionBase&) = default;
  /// @}
  ~CvtExceptionBase() override;
  /// The constant text.
  const char* what() const noexcept override;

private:
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
