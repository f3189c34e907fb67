#pragma once

#include "Checking.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace qarread {

/// What came of one path.
struct Record {
  std::string path;
  std::string reader;                // "plain", "link" or "transform"; empty if there is none
  std::string transform;             // its identifier; empty if there is none
  std::optional<std::uint64_t> in;   // bytes before the reader
  std::optional<std::uint64_t> out;  // bytes that it delivered
  std::string status = "ok";
  std::optional<Findings> findings;  // with --check, of what was converted

  bool hasSucceeded() const { return status == "ok"; }
};

}  // namespace qarread
