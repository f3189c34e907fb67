#pragma once

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace qarread {

/// The options of the command line that say which files are converted on their way.
class Conversions {
public:
  enum class Direction { toUtf8, fromUtf8 };

  /// `app` refers to the object from now on.
  Conversions(CLI::App& app, Direction direction);
  Conversions(const Conversions&) = delete;
  Conversions& operator=(const Conversions&) = delete;

  /// Sets the local code page and registers the transforms. Throws `UsageError`.
  void apply(Korvane::qardatainterfaces::QARFileReaderFactory& factory) const;

private:
  Direction direction_;
  std::string locale_;
  std::vector<std::string> extensions_;
  std::vector<std::string> transcodings_;
  bool strict_ = false;
};

}  // namespace qarread
