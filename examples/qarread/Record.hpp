#pragma once

#include "Checking.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace qarread {

/// The result of reading one path.
struct Record {
  std::string path;
  std::string reader;                // "plain", "link" or "transform"; empty if there is none
  std::string transform;             // its identifier; empty if there is none
  std::optional<std::uint64_t> in;   // size of the input in bytes
  std::optional<std::uint64_t> out;  // bytes that the reader delivered
  std::string status = "ok";
  std::optional<Findings> findings;  // only with --check, and only if the path was converted

  bool hasSucceeded() const { return status == "ok"; }
};

}  // namespace qarread
