#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qarread {

enum class Mode { content, stat, check, catalogue };

/// The options of the command line, except those for conversions.
struct Options {
  bool recursive = false;
  bool runtime = false;
  bool json = false;
  Mode mode = Mode::content;
  unsigned int chunk = 256 * 1024;
  std::string standardInputName = "-";
  std::optional<std::string> namesFile;
  std::vector<std::string> paths;  // empty if `namesFile` is set
};

}  // namespace qarread
