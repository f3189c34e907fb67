#pragma once

#include "Remark.hpp"
#include "readArchive.hpp"

namespace packing {

/// Unpacks the archive into `directory`, completely or not at all. If `directory` exists, it must be an empty
/// directory. Returns and throws what `readArchive` does, and `std::system_error` if something cannot be written.
std::optional<Description> unpackArchive(const std::string& archive, const std::string& directory,
                                         const Limits& limits,
                                         Korvane::qardatainterfaces::QARFileReaderFactory& factory,
                                         const Remark& remark);

}  // namespace packing
