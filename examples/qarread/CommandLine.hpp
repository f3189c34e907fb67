#pragma once

#include "../Conversions.hpp"
#include "Options.hpp"

#include <CLI/CLI.hpp>

#include <optional>
#include <set>
#include <string>

namespace qarread {

/// The command line, which `--help` shows.
class CommandLine {
public:
  CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// Returns what --help or --version wants to be told, if one of them is there; nothing else is checked then.
  /// Throws `UsageError`.
  std::optional<std::string> parse(int argc, char** argv);

  /// What has been parsed. They live as long as the object.
  const Options& options() const noexcept { return options_; }
  const Conversions& conversions() const noexcept { return conversions_; }

  /// The first lines of the help.
  static const char* const usage;

private:
  void takePaths();
  void takeMode();

  CLI::App app_;
  Options options_;
  std::set<Mode> modes_;
  std::string chunk_;
  Conversions conversions_;
};

}  // namespace qarread
