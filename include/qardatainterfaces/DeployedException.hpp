#pragma once

#include <tavik_core/BaseMsgID.hpp>

#include <exception>
#include <string>

namespace Korvane::rtxi18nutil {

/// The one exception type that the library raises for failures of its own.
///
/// Its text comes from the message catalogue, in the language of `ku::i18n::ZrLocale::global()` at the moment it
/// was built and in the process code; a later change of the locale does not change it.
///
/// Reason   An exception that says that a file is not there or cannot be opened is nested around the
///          `std::system_error` that says why: `std::rethrow_if_nested` throws it.
/// Errors   Nothing here throws. Whatever fails while the text is made, memory included, the text is then the
///          name of the message id.
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] DeployedException : public std::exception {
public:
  /// The id is not referred to afterwards, its name is.
  explicit DeployedException(const tavik_core::BaseMsgID& id) noexcept;
  /// Copies have the same texts; without memory for them, the name.
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
