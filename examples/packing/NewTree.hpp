#pragma once

#include "Descriptor.hpp"

#include <optional>
#include <string>

namespace packing {

/// A directory that appears under its name when it is complete, or not at all.
///
/// Names   Relative, as `relativeName` gives them; missing directories on the way are made. No link in the tree is
/// ever
///         followed, so that nothing is written outside.
/// State   Until `commit` the tree has a temporary name beside its own; the destructor removes it.
/// Errors  `std::system_error` with the name; also for a name that exists already.
class NewTree {
public:
  /// What is at `path`, if anything, must be an empty directory.
  explicit NewTree(const std::string& path);
  ~NewTree();
  NewTree(const NewTree&) = delete;
  NewTree& operator=(const NewTree&) = delete;

  /// One that exists already is fine.
  void makeDirectory(const std::string& name);
  /// The file, to be written. Its permissions are what the umask leaves.
  Descriptor makeFile(const std::string& name, bool executable);
  void makeLink(const std::string& name, const std::string& target);
  /// Another name of the file `target` of this tree.
  void makeHardLink(const std::string& name, const std::string& target);

  void commit();

private:
  std::string path_;
  std::string temporary_;
  std::optional<Descriptor> root_;
};

}  // namespace packing
