#pragma once

#include <cstdint>
#include <string>

namespace ku::filesystem {

/// The kinds that matter here.
enum class file_type { not_found, regular, directory, other };

/// What the file system says about a path, links followed.
struct file_status {
  file_type type;        ///< of what is at the path
  std::uint64_t length;  ///< in bytes; 0 for a path that does not exist
};

/// Absence (ENOENT, ENOTDIR) is an answer; every other failure raises `std::system_error`.
/// `native_path` is in the process code. May be called by any thread at any time.
[[gnu::visibility("default")]] file_status status(const std::string& native_path);

}  // namespace ku::filesystem
