#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

namespace qarread {

/// One entry of a walk: the path to open, and its name relative to the argument at which the walk began.
struct Found {
  std::filesystem::path path;
  std::filesystem::path name;
};

using Visit = std::function<void(const Found&)>;
using Fail = std::function<void(const std::string& path, const std::error_code& error)>;

/// Calls `visit` for everything below the directory `root` except directories, in the byte order of the names; links
/// are not followed. A `root` that is not a directory is visited itself. Calls `fail` for each directory that cannot
/// be listed; entries that could be listed are still visited. Calls `enter`, if given, for each directory below
/// `root` before its entries.
void walk(const std::filesystem::path& root, const Visit& visit, const Fail& fail, const Visit& enter = {});

/// The entry for an argument itself, whatever its file type.
Found argument(const std::filesystem::path& path);

}  // namespace qarread
