#pragma once

#include "ArchiveReader.hpp"
#include "Description.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <optional>
#include <string>

namespace packing {

/// Receives the entries of an archive. Names are relative and unique; no link leads out of the directory.
class EntryConsumer {
public:
  EntryConsumer() = default;
  virtual ~EntryConsumer() = default;
  EntryConsumer(const EntryConsumer&) = delete;
  EntryConsumer& operator=(const EntryConsumer&) = delete;

  virtual void directory(const std::string& name) = 0;
  /// Must read `reader` to its end.
  virtual void file(const std::string& name, bool executable, Korvane::qardatainterfaces::QARFileReader& reader) = 0;
  virtual void link(const std::string& name, const std::string& target) = 0;
  /// `target` is an earlier file.
  virtual void hardLink(const std::string& name, const std::string& target) = 0;
};

/// Passes the entries of the archive to `consumer` in order, each file through a reader that `factory` chooses by the
/// name. Compares them with the description in the archive, if there is one, and returns it. Throws `BadArchive`, and
/// what the readers and `consumer` throw.
std::optional<Description> readArchive(const std::string& path, const Limits& limits,
                                       Korvane::qardatainterfaces::QARFileReaderFactory& factory,
                                       EntryConsumer& consumer);

}  // namespace packing
