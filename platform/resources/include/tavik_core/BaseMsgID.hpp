#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tavik_core {

/// The texts of one component in all its languages: an ICU resource package held in memory.
struct MessageBundle {
  const char* name;  ///< of the package
  const void* data;  ///< the package, as ICU maps it
};

/// Names one message and carries the arguments that its text is to show.
///
/// Ownership  The arguments are copies. The bundle and the name are referred to and must live as long as
///            the program, so that an error can always tell its name, even when memory has run out.
/// Threads    Immutable once built.
class [[gnu::visibility("default")]] BaseMsgID {
public:
  virtual ~BaseMsgID();

  /// Where the text is to be found.
  const MessageBundle& bundle() const noexcept { return *bundle_; }
  /// The key of the text in its bundle, and the identity of the message.
  const std::string& name() const noexcept { return *name_; }
  /// In the order of the placeholders {0}, {1}, ...; text in the process code.
  const std::vector<std::string>& arguments() const noexcept { return arguments_; }

protected:
  /// Refers to `bundle` and `name`, keeps `arguments`.
  BaseMsgID(const MessageBundle& bundle, const std::string& name, std::vector<std::string> arguments)
      : bundle_(&bundle), name_(&name), arguments_(std::move(arguments)) {}
  /// Copied as part of a message only.
  /// @{
  BaseMsgID(const BaseMsgID&) = default;
  BaseMsgID& operator=(const BaseMsgID&) = default;
  /// @}

private:
  const MessageBundle* bundle_;
  const std::string* name_;
  std::vector<std::string> arguments_;
};

}  // namespace tavik_core
