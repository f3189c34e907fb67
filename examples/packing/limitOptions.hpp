#pragma once

#include "ArchiveReader.hpp"

#include <CLI/CLI.hpp>

namespace packing {

/// Adds the command-line options for the limits. `app` keeps a reference to `limits`.
inline void addLimitOptions(CLI::App& app, Limits& limits) {
  app.add_option("--max-size", limits.size, "Largest size of the unpacked content, in bytes")
      ->type_name("BYTES")
      ->capture_default_str();
  app.add_option("--max-ratio", limits.ratio,
                 "Largest size of the unpacked content, as a multiple of the size of the archive")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
}

}  // namespace packing
