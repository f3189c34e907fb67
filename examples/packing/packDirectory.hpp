#pragma once

#include "Description.hpp"
#include "Remark.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <ctime>
#include <string>

namespace packing {

struct PackOptions {
  bool demo = false;     // the flag of every entry
  std::time_t time = 0;  // of every entry
};

/// Writes what is below `directory`, each file as the reader delivers it that `factory` picks, and what `description`
/// becomes: it may hold root macros, and is filled with the entries; the Tarvo path is the directories, the class
/// path the .jar files. The archive appears when it is complete, or not at all.
///
/// Throws what the readers and `ArchiveWriter` throw, and `std::runtime_error` for a file that grows or shrinks
/// meanwhile, and for one of the name of the description.
void packDirectory(const std::string& directory, const std::string& archive, const PackOptions& options,
                   Korvane::qardatainterfaces::QARFileReaderFactory& factory, Description& description,
                   const Remark& remark);

}  // namespace packing
