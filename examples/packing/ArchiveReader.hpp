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

/// What an archive may grow to, in bytes.
struct Limits {
  std::uint64_t size = std::uint64_t{16} << 30;
  /// Times what has been read of the archive.
  std::uint64_t ratio = 200;
  /// So much is allowed at any ratio.
  static constexpr std::uint64_t harmless = 64U << 20;
};

/// Reads a tar, whoever has made it, plain or compressed by gzip or zstd, from its first entry to its end.
///
/// Errors   `BadArchive`, with the name of the archive or the entry, for whatever is damaged, cut off or larger than
/// the
///          limits; afterwards the object must not be used any more.
/// Threads  The thread that made the object, alone.
class ArchiveReader {
public:
  enum class Kind { file, directory, link, hardLink };

  ArchiveReader(const std::string& path, const Limits& limits);
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  /// Goes to the next entry; false at the end of the archive.
  bool next();

  /// Of the entry.
  /// @{
  Kind kind() const noexcept { return kind_; }
  /// As `relativeName` gives it.
  const std::string& name() const noexcept { return name_; }
  bool executable() const { return (::archive_entry_perm(entry_) & 0111) != 0; }
  /// Of a link or hard link.
  const std::string& target() const noexcept { return target_; }
  /// Places at most `size` bytes of the content at `buffer`; 0 at its end.
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
  Utf8Locale locale_;  // libarchive converts names to that of the C library: in this one they stay the bytes they are
  std::unique_ptr<::archive, Free> reader_;
  ::archive_entry* entry_ = nullptr;  // the reader's
  Kind kind_ = Kind::directory;
  std::string name_, target_;
  std::uint64_t left_ = 0;
  std::uint64_t delivered_ = 0;
};

}  // namespace packing
