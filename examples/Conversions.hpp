#pragma once

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace qarread {

/// The options of the command line that say which files are converted, and how.
class Conversions {
public:
  /// Of the options for the local code page, those that the program has.
  enum class Directions { toUtf8, fromUtf8, both };
  /// Makes a transform for the factory, which will own it. The empty encoding is the local code page.
  using Make = std::function<Korvane::qardatainterfaces::QARTransform*(const char* id, const std::string& from,
                                                                       const std::string& to)>;

  /// `app` and the object refer to each other from now on.
  Conversions(CLI::App& app, Directions directions);
  Conversions(const Conversions&) = delete;
  Conversions& operator=(const Conversions&) = delete;

  /// What cannot be converted without loss is to be refused.
  bool areStrict() const noexcept { return strict_; }

  /// Sets the local code page and registers the transforms, in the order of the command line. They are `Converting`
  /// ones, or what `make` makes. Throws `UsageError` for a locale, an encoding or an extension that is none, and what
  /// `make` throws.
  void apply(Korvane::qardatainterfaces::QARFileReaderFactory& factory) const;
  void apply(Korvane::qardatainterfaces::QARFileReaderFactory& factory, const Make& make) const;

private:
  CLI::App& app_;
  std::string locale_;
  bool strict_ = false;
  CLI::Option* toUtf8_ = nullptr;
  CLI::Option* fromUtf8_ = nullptr;
  CLI::Option* transcode_ = nullptr;
  std::vector<std::string> values_;  // where CLI11 puts what is asked of the options themselves
};

}  // namespace qarread
