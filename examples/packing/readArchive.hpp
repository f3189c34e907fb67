#pragma once

#include "ArchiveReader.hpp"
#include "Description.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <optional>
#include <string>

namespace packing {

/// What becomes of the entries of an archive. Names are relative and occur once; no link leads out of the directory.
class EntryConsumer {
public:
  EntryConsumer() = default;
  virtual ~EntryConsumer() = default;
  EntryConsumer(const EntryConsumer&) = delete;
  EntryConsumer& operator=(const EntryConsumer&) = delete;

  virtual void directory(const std::string& name) = 0;
  /// `reader` is to be read to its end.
  virtual void file(const std::string& name, bool executable, Korvane::qardatainterfaces::QARFileReader& reader) = 0;
  virtual void link(const std::string& name, const std::string& target) = 0;
  /// `target` is a file that came before.
  virtual void hardLink(const std::string& name, const std::string& target) = 0;
};

/// Hands the entries of the archive to `consumer`, in their order, each file through a reader that `factory` picks by
/// the name. Returns what the archive says of itself, if it does so, after a comparison with what was found. Throws
/// `BadArchive`, and what the readers and `consumer` throw.
std::optional<Description> readArchive(const std::string& path, const Limits& limits,
                                       Korvane::qardatainterfaces::QARFileReaderFactory& factory,
                                       EntryConsumer& consumer);

}  // namespace packing
