#pragma once

#include "Fingerprint.hpp"
#include "NewFile.hpp"
#include "Utf8Locale.hpp"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <exception>
#include <memory>
#include <string>

#include <archive.h>
#include <archive_entry.h>

namespace packing {

/// Writes a reproducible pax tar, whose bytes depend only on the arguments: every entry belongs to root and has the
/// same time, and the permissions 755 or 644. Names are bytes.
///
/// State   The archive appears under its name only when `finish` has succeeded.
/// Errors  `std::system_error` if it cannot be written, `std::runtime_error` for errors of libarchive.
/// Threads Only the thread that made the object may use it.
class ArchiveWriter {
public:
  /// The extension of `path` chooses the compression: .tar, .tar.gz or .tar.zst. Throws `std::invalid_argument` for
  /// others.
  ArchiveWriter(const std::string& path, std::time_t time);

  void directory(const std::string& name);
  /// Returns the fingerprint of the target.
  Fingerprint link(const std::string& name, const std::string& target);

  /// A file is written by `beginFile` with its size, and then exactly that many bytes.
  /// @{
  void beginFile(const std::string& name, bool executable, std::uint64_t size);
  void write(const void* bytes, std::size_t size);
  /// Returns the fingerprint of the content.
  Fingerprint endFile();
  /// @}

  void finish();

  /// Whether `found` is the status of the archive itself.
  bool is(const struct stat& found) const { return file_.is(found); }

private:
  struct Free {
    void operator()(::archive* writer) const {
      ::archive_write_fail(writer);  // otherwise libarchive pads an unfinished entry with zeros
      ::archive_write_free(writer);
    }
    void operator()(::archive_entry* entry) const { ::archive_entry_free(entry); }
  };

  void start(const std::string& name, unsigned type, unsigned permissions);
  void writeHeader();
  void check(long status) const;

  Utf8Locale locale_;  // libarchive converts names from the thread's locale to the UTF-8 of a pax tar
  NewFile file_;
  std::exception_ptr failure_;  // of a write to the file; it must not pass through libarchive's C code
  std::time_t time_;
  std::unique_ptr<::archive_entry, Free> entry_;
  Fingerprint fingerprint_;
  std::unique_ptr<::archive, Free> writer_;
};

}  // namespace packing
