#pragma once

#include "Remark.hpp"
#include "readArchive.hpp"

namespace packing {

/// Makes `directory` from the archive: all of it, or nothing at all. What is at `directory`, if anything, must be an
/// empty directory. Returns and throws what `readArchive` does, and `std::system_error` for what cannot be written.
std::optional<Description> unpackArchive(const std::string& archive, const std::string& directory,
                                         const Limits& limits,
                                         Korvane::qardatainterfaces::QARFileReaderFactory& factory,
                                         const Remark& remark);

}  // namespace packing
