#pragma once

#include "Utf8Locale.hpp"
#include "entryNames.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <archive.h>
#include <archive_entry.h>

namespace packing {

/// Limits for the size of the unpacked content, in bytes.
struct Limits {
  std::uint64_t size = std::uint64_t{16} << 30;
  /// The largest ratio of unpacked content to archive read so far.
  std::uint64_t ratio = 200;
  /// This much is allowed at any ratio.
  static constexpr std::uint64_t harmless = 64U << 20;
};

/// Reads a tar made by any program, uncompressed or compressed by gzip or zstd, from the first entry to the end.
///
/// Errors   `BadArchive`, with the name of the archive or the entry, if something is damaged, truncated or larger
///          than the limits; the object must not be used after that.
/// Threads  Only the thread that made the object may use it.
class ArchiveReader {
public:
  enum class Kind { file, directory, link, hardLink };

  ArchiveReader(const std::string& path, const Limits& limits);
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  /// Advances to the next entry; returns false at the end of the archive.
  bool next();

  /// Properties of the entry.
  /// @{
  Kind kind() const noexcept { return kind_; }
  /// The name as `relativeName` returns it.
  const std::string& name() const noexcept { return name_; }
  bool executable() const { return (::archive_entry_perm(entry_) & 0111) != 0; }
  /// The target of a link or hard link.
  const std::string& target() const noexcept { return target_; }
  /// Copies at most `size` bytes of the content to `buffer` and returns how many; 0 at its end.
  std::size_t read(void* buffer, std::size_t size);
  /// @}

private:
  struct Free {
    void operator()(::archive* reader) const { ::archive_read_free(reader); }
  };

  void readHeader();
  void check(long status, const std::string& about) const;
  void checkLimits() const;

  std::string path_;
  Limits limits_;
  Utf8Locale locale_;  // libarchive converts names to the thread's locale; in UTF-8 their bytes do not change
  std::unique_ptr<::archive, Free> reader_;
  ::archive_entry* entry_ = nullptr;  // owned by the reader
  Kind kind_ = Kind::directory;
  std::string name_, target_;
  std::uint64_t left_ = 0;
  std::uint64_t delivered_ = 0;
};

}  // namespace packing
