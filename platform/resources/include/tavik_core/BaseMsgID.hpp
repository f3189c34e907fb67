#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tavik_core {

/// The texts of one component in all its languages: an ICU resource package in memory.
struct MessageBundle {
  const char* name;  ///< name of the package
  const void* data;  ///< the package, in the format that ICU maps into memory
};

/// Identifies one message and holds the arguments of its text.
///
/// Ownership  The arguments are copies. The bundle and the name are references and must live as long as the program.
///            So the name of an error is available even when memory has run out.
/// Threads    Immutable once built.
class [[gnu::visibility("default")]] BaseMsgID {
public:
  virtual ~BaseMsgID();

  /// The bundle that has the text.
  const MessageBundle& bundle() const noexcept { return *bundle_; }
  /// The name of the message, which is the key of the text in the bundle.
  const std::string& name() const noexcept { return *name_; }
  /// The arguments in the order of the placeholders {0}, {1}, ...; text in the process code.
  const std::vector<std::string>& arguments() const noexcept { return arguments_; }

protected:
  /// Keeps references to `bundle` and `name`, and keeps `arguments`.
  BaseMsgID(const MessageBundle& bundle, const std::string& name, std::vector<std::string> arguments)
      : bundle_(&bundle), name_(&name), arguments_(std::move(arguments)) {}
  /// Copies are made only by derived classes.
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
