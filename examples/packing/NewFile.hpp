#pragma once

#include "Descriptor.hpp"

#include <cstddef>
#include <string>

struct stat;

namespace packing {

/// A file that appears under its name only when it is complete, and then replaces an existing one.
///
/// State   Until `commit` it has a temporary name in the same directory; the destructor removes it.
/// Errors  `std::system_error`.
class NewFile {
public:
  explicit NewFile(const std::string& path);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(const void* bytes, std::size_t size) { file_.write(bytes, size); }

  /// Waits until the content is on disk, then gives the file its name.
  void commit();

  /// Whether `found` is the status of this file.
  bool is(const struct stat& found) const;

private:
  std::string temporary_;
  Descriptor file_;
};

}  // namespace packing
