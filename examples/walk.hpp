#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

namespace qarread {

/// What a walk meets: a path to open, and its name below the argument that the walk began with.
struct Found {
  std::filesystem::path path;
  std::filesystem::path name;
};

using Visit = std::function<void(const Found&)>;
using Fail = std::function<void(const std::string& path, const std::error_code& error)>;

/// Calls `visit` for all that is below the directory `root` and is no directory itself, in the order of the bytes of
/// the names; links are not followed. A `root` that is no directory is visited itself. Directories that cannot be
/// listed go to `fail`, with what could be listed visited all the same. A directory below `root` goes to `enter`, if
/// that is given, before what it holds.
void walk(const std::filesystem::path& root, const Visit& visit, const Fail& fail, const Visit& enter = {});

/// The argument itself, whatever it is.
Found argument(const std::filesystem::path& path);

}  // namespace qarread
