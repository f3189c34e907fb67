#pragma once

#include "../Conversions.hpp"
#include "Options.hpp"

#include <CLI/CLI.hpp>

#include <optional>
#include <set>
#include <string>

namespace qarread {

/// Parses the command line, and has the text of `--help`.
class CommandLine {
public:
  CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// Returns the text to print if --help or --version is given; the rest of the command line is not checked then.
  /// Throws `UsageError`.
  std::optional<std::string> parse(int argc, char** argv);

  /// The results of `parse`. They live as long as the object.
  const Options& options() const noexcept { return options_; }
  const Conversions& conversions() const noexcept { return conversions_; }

  /// The first lines of the help.
  static const char* const usage;

private:
  void checkOptions() const;
  void takePaths();
  void takeMode();

  CLI::App app_;
  Options options_;
  std::set<Mode> modes_;
  std::string chunk_;
  Conversions conversions_;
};

}  // namespace qarread
