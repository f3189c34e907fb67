#pragma once

#include <tavik_core/BaseMsgID.hpp>

#include <string>

/// The messages of the data interfaces. All arguments are text in the process code. Message ids are immutable and may
/// be used by several threads.
namespace qar::qardatainterfaces {

/// A file could not be opened. The arguments are its path, and the state of the file stream as the reason, such as
/// "file is closed.failbit is set.".
class [[gnu::visibility("default")]] QARDATAINTERFACES_FILE_OPEN_FAILED final : public tavik_core::BaseMsgID {
public:
  /// Copies its arguments.
  QARDATAINTERFACES_FILE_OPEN_FAILED(const std::string& path, const std::string& reason);
};

/// There is nothing at the path.
class [[gnu::visibility("default")]] QARDATAINTERFACES_FILE_NOT_EXIST final : public tavik_core::BaseMsgID {
public:
  /// Copies its arguments.
  explicit QARDATAINTERFACES_FILE_NOT_EXIST(const std::string& path);
};

/// The path names something that is neither a regular file nor a symbolic link.
class [[gnu::visibility("default")]] QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED final
    : public tavik_core::BaseMsgID {
public:
  /// Copies its arguments.
  explicit QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED(const std::string& path);
};

/// A code-page conversion failed for a reason other than an invalid character.
class [[gnu::visibility("default")]] QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER final
    : public tavik_core::BaseMsgID {
public:
  QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER();
};

}  // namespace qar::qardatainterfaces
