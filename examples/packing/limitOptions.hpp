#pragma once

#include "ArchiveReader.hpp"

#include <CLI/CLI.hpp>

namespace packing {

/// Adds the command-line options for the limits. `app` keeps a reference to `limits`.
inline void addLimitOptions(CLI::App& app, Limits& limits) {
  app.add_option("--max-size", limits.size, "What the archive may become, in bytes")->capture_default_str();
  app.add_option("--max-ratio", limits.ratio, "The same, in times of its own size")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
}

}  // namespace packing
