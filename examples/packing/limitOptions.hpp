#pragma once

#include "ArchiveReader.hpp"

#include <CLI/CLI.hpp>

namespace packing {

/// The options of the command line that say how much an archive may become. `app` refers to `limits` from now on.
inline void addLimitOptions(CLI::App& app, Limits& limits) {
  app.add_option("--max-size", limits.size, "What the archive may become, in bytes")->capture_default_str();
  app.add_option("--max-ratio", limits.ratio, "The same, in times of its own size")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
}

}  // namespace packing
