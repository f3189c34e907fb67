#pragma once

#include "Fingerprint.hpp"

#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARData.hpp>

#include <map>
#include <string>

namespace packing {

/// The fingerprint of each file and link, by its native name. That of a link is computed from the text of its target.
using Fingerprints = std::map<std::string, Fingerprint>;

/// The description in the last entry of an archive: the catalogue, the version text of the context, and the
/// fingerprints that detect damage. Keys are neither written nor read.
struct Description {
  /// The name of the entry.
  static constexpr const char* name = ".qar-description.json";
  /// The largest size of the entry, in bytes.
  static constexpr std::size_t most = 256U << 20;

  Korvane::qardatainterfaces::QARData catalogue;
  Korvane::qardatainterfaces::QARContext context;
  Fingerprints fingerprints;

  /// Throws `std::length_error` if it becomes too large.
  std::string toJson();
  /// Throws `BadArchive` for anything that `toJson` does not write.
  static Description fromJson(const std::string& json);
};

}  // namespace packing
