#pragma once

#include <cstdint>
#include <string>

namespace ku::filesystem {

/// The kinds of files that `status` distinguishes.
enum class file_type { not_found, regular, directory, other };

/// The status of a path. Links are followed.
struct file_status {
  file_type type;        ///< the kind of file
  std::uint64_t length;  ///< size in bytes as the system reports it; 0 for a path that does not exist
};

/// Queries the status of a path, which is in the process code. A path that does not exist (ENOENT, ENOTDIR) gives
/// `not_found`; every other failure raises `std::system_error` with the system's error code in
/// `std::generic_category()`. Any thread may call it at any time.
[[gnu::visibility("default")]] file_status status(const std::string& native_path);

}  // namespace ku::filesystem
