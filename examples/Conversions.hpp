#pragma once

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <CLI/CLI.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qarread {

/// The command-line options for the conversion of files.
class Conversions {
public:
  /// Which options for the local code page the program has.
  enum class Directions { toUtf8, fromUtf8, both };
  /// Makes a transform for the factory, which will own it. The empty encoding is the local code page.
  using Make = std::function<Korvane::qardatainterfaces::QARTransform*(const char* id, const std::string& from,
                                                                       const std::string& to)>;

  /// Adds the options to `app`, which then refers to this object; both must stay alive while they are used.
  Conversions(CLI::App& app, Directions directions);
  Conversions(const Conversions&) = delete;
  Conversions& operator=(const Conversions&) = delete;

  /// Whether a file that cannot be converted without loss must fail.
  bool areStrict() const noexcept { return strict_; }

  /// Sets the local code page and registers the transforms, in the order of the command line. They are made by
  /// `make`, by default as `Converting` transforms. Throws `UsageError` for an unknown locale or encoding and for an
  /// invalid extension, and what `make` throws.
  void apply(Korvane::qardatainterfaces::QARFileReaderFactory& factory) const;
  void apply(Korvane::qardatainterfaces::QARFileReaderFactory& factory, const Make& make) const;

private:
  CLI::App& app_;
  std::optional<std::string> locale_;
  bool strict_ = false;
  CLI::Option* toUtf8_ = nullptr;
  CLI::Option* fromUtf8_ = nullptr;
  CLI::Option* transcode_ = nullptr;
  std::vector<std::string> values_;  // required by CLI11 but not used: the values are read from the options
};

}  // namespace qarread
