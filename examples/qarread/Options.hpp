#pragma once

#include "../UsageError.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qarread {

enum class Mode { content, stat, catalogue };
enum class CodePage { toUtf8, fromUtf8 };

/// The extensions of the files that go through one code-page transform, each with its leading dot.
struct Registration {
  CodePage transform;
  std::vector<std::u16string> extensions;
};

/// What the command line asks for.
struct Options {
  bool help = false;
  bool recursive = false;
  bool runtime = false;
  Mode mode = Mode::content;
  unsigned int chunk = 256 * 1024;
  std::optional<std::string> locale;
  std::vector<Registration> registrations;
  std::vector<std::string> paths;
};

/// What the command line may hold, and what it means.
extern const char* const synopsis;
extern const char* const description;

/// Throws `UsageError`. Nothing is checked after --help.
Options parse(int argc, char** argv);

}  // namespace qarread
