#include "ArchiveReader.hpp"

#include "Interruption.hpp"

#include <algorithm>
#include <cstring>
#include <new>

namespace packing {
namespace {

constexpr std::size_t block = 256 * 1024;
constexpr la_int64_t end_mark = 512;  // a header of zeros

std::uint64_t position(::archive* reader, int filter) {
  return static_cast<std::uint64_t>(std::max<la_int64_t>(0, ::archive_filter_bytes(reader, filter)));
}

std::string orEmpty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

ArchiveReader::ArchiveReader(const std::string& path, const Limits& limits)
    : path_(path), limits_(limits), reader_(::archive_read_new()) {
  if (!reader_) throw std::bad_alloc();
  check(::archive_read_support_format_tar(reader_.get()), path_);
  check(::archive_read_support_filter_gzip(reader_.get()), path_);
  check(::archive_read_support_filter_zstd(reader_.get()), path_);
  check(::archive_read_open_filename(reader_.get(), path.c_str(), block), path_);
}

bool ArchiveReader::next() {
  checkInterruption();
  if (entry_ != nullptr) check(::archive_read_data_skip(reader_.get()), name_);
  const auto before = ::archive_filter_bytes(reader_.get(), 0);
  const int status = ::archive_read_next_header(reader_.get(), &entry_);
  if (status == ARCHIVE_EOF) {
    // libarchive accepts a tar without its end mark, and so a tar that is truncated between two entries.
    if (::archive_filter_bytes(reader_.get(), 0) - before < end_mark) throw BadArchive(path_ + ": is truncated");
    return false;
  }
  // A name that should be UTF-8 but is not is returned unchanged, with a warning.
  if (status != ARCHIVE_WARN || ::archive_entry_pathname_utf8(entry_) != nullptr) check(status, path_);
  readHeader();
  checkLimits();
  return true;
}

void ArchiveReader::readHeader() {
  name_ = relativeName(orEmpty(::archive_entry_pathname(entry_)));
  left_ = 0;
  if (const char* const target = ::archive_entry_hardlink(entry_)) {
    kind_ = Kind::hardLink;
    target_ = relativeName(target);
    return;
  }
  switch (::archive_entry_filetype(entry_)) {
    case AE_IFREG:
      kind_ = Kind::file;
      left_ = static_cast<std::uint64_t>(std::max<la_int64_t>(0, ::archive_entry_size(entry_)));
      break;
    case AE_IFDIR: kind_ = Kind::directory; break;
    case AE_IFLNK:
      kind_ = Kind::link;
      target_ = orEmpty(::archive_entry_symlink(entry_));
      break;
    default: throw BadArchive(name_ + ": is neither a file nor a directory nor a link");
  }
}

std::size_t ArchiveReader::read(void* buffer, std::size_t size) {
  checkInterruption();
  const auto count = ::archive_read_data(reader_.get(), buffer, size);
  check(count, name_);
  auto placed = static_cast<std::size_t>(count);
  if (placed == 0 && left_ > 0) {  // a hole at the end; a truncated entry is an error
    placed = std::min<std::uint64_t>(size, left_);
    std::memset(buffer, 0, placed);
  }
  left_ -= std::min<std::uint64_t>(left_, placed);
  delivered_ += placed;
  checkLimits();
  return placed;
}

void ArchiveReader::check(long status, const std::string& about) const {
  if (status >= ARCHIVE_OK) return;
  const auto reason = orEmpty(::archive_error_string(reader_.get()));
  throw BadArchive(about + ": " + (reason.empty() ? "cannot be read" : reason));
}

// Counts holes, which take no space in the archive, and headers, which take no space on disk.
void ArchiveReader::checkLimits() const {
  const auto grown = std::max(delivered_, position(reader_.get(), 0));
  if (grown > limits_.size) throw BadArchive(path_ + ": is larger than allowed");
  if (grown > Limits::harmless && grown / limits_.ratio > position(reader_.get(), -1))
    throw BadArchive(path_ + ": grows more than allowed; this looks like a decompression bomb");
}

}  // namespace packing
