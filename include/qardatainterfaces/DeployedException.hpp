#pragma once

#include <tavik_core/BaseMsgID.hpp>

#include <exception>
#include <string>

namespace Korvane::rtxi18nutil {

/// The one exception type that the library raises for failures of its own.
///
/// The text comes from the message catalogue and is encoded in the process code. Its language is that of
/// `ku::i18n::ZrLocale::global()` at construction; a later change of the locale has no effect on it.
///
/// Reason   If a file does not exist or cannot be opened, the exception has a nested `std::system_error` with the
///          system's error code: `std::rethrow_if_nested` throws it.
/// Errors   No member throws. If the text cannot be made, for example because memory runs out, the text is the
///          name of the message id.
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] DeployedException : public std::exception {
public:
  /// Makes the text now. Does not refer to `id` later, but to its name, which lives as long as the program.
  explicit DeployedException(const tavik_core::BaseMsgID& id) noexcept;
  /// A copy has the same text, or the name of the message id if there is no memory for the text.
  /// @{
  DeployedException(const DeployedException& other) noexcept;
  DeployedException& operator=(const DeployedException& other) noexcept;
  /// @}
  ~DeployedException() override;

  /// The text, in the process code; valid until the exception is assigned to or destroyed.
  const char* what() const noexcept override;

  /// The name of the message id, for example `QARDATAINTERFACES_FILE_NOT_EXIST`: the same in every language.
  const std::string& identifier() const noexcept;

private:
  std::string message_;            // empty if there was no memory for it
  const std::string* identifier_;  // the id's own name, which lives as long as the program
};

}  // namespace Korvane::rtxi18nutil
