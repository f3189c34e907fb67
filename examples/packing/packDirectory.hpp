#pragma once

#include "Description.hpp"
#include "Remark.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <ctime>
#include <string>

namespace packing {

struct PackOptions {
  bool demo = false;     // the flag of every entry
  std::time_t time = 0;  // the time of every entry
};

/// Writes everything below `directory`, each file through a reader of `factory`, and the description. `description`
/// may have root macros; the entries are added to it, the directories as the Tarvo path and the .jar files as the
/// class path. The archive appears only when it is complete.
///
/// Throws what the readers and `ArchiveWriter` throw, and `std::runtime_error` for a file that grows or shrinks
/// meanwhile, and for a file that has the name of the description.
void packDirectory(const std::string& directory, const std::string& archive, const PackOptions& options,
                   Korvane::qardatainterfaces::QARFileReaderFactory& factory, Description& description,
                   const Remark& remark);

}  // namespace packing
