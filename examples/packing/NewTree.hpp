#pragma once

#include "Descriptor.hpp"

#include <optional>
#include <string>

namespace packing {

/// A directory that appears under its name only when it is complete.
///
/// Names   Names are relative, as `relativeName` returns them; missing parent directories are created. Links in the
///         tree are never followed, so nothing is written outside.
/// State   Until `commit` the tree has a temporary name beside its own; the destructor removes it.
/// Errors  `std::system_error` with the name; also for a name that exists already.
class NewTree {
public:
  /// If there is something at `path`, it must be an empty directory.
  explicit NewTree(const std::string& path);
  ~NewTree();
  NewTree(const NewTree&) = delete;
  NewTree& operator=(const NewTree&) = delete;

  /// The directory may already exist.
  void makeDirectory(const std::string& name);
  /// Creates a file for writing. Its permissions follow the umask.
  Descriptor makeFile(const std::string& name, bool executable);
  void makeLink(const std::string& name, const std::string& target);
  /// Creates a hard link to the file `target` of this tree.
  void makeHardLink(const std::string& name, const std::string& target);

  void commit();

private:
  std::string path_;
  std::string temporary_;
  std::optional<Descriptor> root_;
};

}  // namespace packing
