#include "ArchiveWriter.hpp"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <string_view>

namespace packing {
namespace {

constexpr int block = 32 * 1024;

void addCompression(::archive* writer, const std::string& path) {
  int status = ARCHIVE_OK;
  if (path.ends_with(".tar.gz")) {
    status = ::archive_write_add_filter_gzip(writer);
    if (status == ARCHIVE_OK) status = ::archive_write_set_filter_option(writer, "gzip", "timestamp", nullptr);
  } else if (path.ends_with(".tar.zst")) {
    status = ::archive_write_add_filter_zstd(writer);
  } else if (!path.ends_with(".tar")) {
    throw std::invalid_argument(path + ": the name of an archive ends with .tar, .tar.gz or .tar.zst");
  }
  if (status != ARCHIVE_OK) throw std::runtime_error(path + ": " + ::archive_error_string(writer));
}

}  // namespace

ArchiveWriter::ArchiveWriter(const std::string& path, std::time_t time)
    : file_(path), time_(time), entry_(::archive_entry_new()), writer_(::archive_write_new()) {
  if (!entry_ || !writer_) throw std::bad_alloc();
  ::archive* const writer = writer_.get();
  addCompression(writer, path);
  check(::archive_write_set_format_pax_restricted(writer));
  check(::archive_write_set_bytes_per_block(writer, block));
  check(::archive_write_set_bytes_in_last_block(writer, 1));
  const auto write = [](::archive* a, void* self, const void* bytes, std::size_t size) -> la_ssize_t {
    auto& to = *static_cast<ArchiveWriter*>(self);
    try {
      to.file_.write(bytes, size);
      return static_cast<la_ssize_t>(size);
    } catch (...) {
      to.failure_ = std::current_exception();
      ::archive_set_error(a, EIO, "not written");
      return -1;
    }
  };
  check(::archive_write_open(writer, this, nullptr, write, nullptr));
}

void ArchiveWriter::directory(const std::string& name) {
  start(name, AE_IFDIR, 0755);
  writeHeader();
}

Fingerprint ArchiveWriter::link(const std::string& name, const std::string& target) {
  start(name, AE_IFLNK, 0777);
  ::archive_entry_set_symlink(entry_.get(), target.c_str());
  writeHeader();
  fingerprint_.add(target.data(), target.size());
  return fingerprint_;
}

void ArchiveWriter::beginFile(const std::string& name, bool executable, std::uint64_t size) {
  start(name, AE_IFREG, executable ? 0755 : 0644);
  ::archive_entry_set_size(entry_.get(), static_cast<la_int64_t>(size));
  writeHeader();
}

void ArchiveWriter::write(const void* bytes, std::size_t size) {
  fingerprint_.add(bytes, size);
  check(::archive_write_data(writer_.get(), bytes, size));
}

Fingerprint ArchiveWriter::endFile() {
  check(::archive_write_finish_entry(writer_.get()));
  return fingerprint_;
}

void ArchiveWriter::finish() {
  check(::archive_write_close(writer_.get()));
  file_.commit();
}

void ArchiveWriter::start(const std::string& name, unsigned type, unsigned permissions) {
  fingerprint_ = {};
  ::archive_entry* const entry = ::archive_entry_clear(entry_.get());
  ::archive_entry_set_pathname(entry, name.c_str());
  ::archive_entry_set_filetype(entry, type);
  ::archive_entry_set_perm(entry, permissions);
  ::archive_entry_set_mtime(entry, time_, 0);
}

void ArchiveWriter::writeHeader() {
  // libarchive stores a name that is not UTF-8 unchanged, marks it (hdrcharset=BINARY) and warns. But it joins a
  // surrogate pair of three bytes each to one character of four bytes, which changes the name.
  const auto changed = [](const char* as_utf8, const char* as_is) {
    return as_utf8 != nullptr && std::string_view(as_utf8) != as_is;
  };
  ::archive_entry* const entry = entry_.get();
  if (changed(::archive_entry_pathname_utf8(entry), ::archive_entry_pathname(entry)) ||
      changed(::archive_entry_symlink_utf8(entry), ::archive_entry_symlink(entry)))
    throw std::runtime_error(std::string(::archive_entry_pathname(entry)) + ": a tar cannot hold this name");
  const int status = ::archive_write_header(writer_.get(), entry);
  if (status != ARCHIVE_WARN) check(status);
}

void ArchiveWriter::check(long status) const {
  if (failure_) std::rethrow_exception(failure_);
  if (status < ARCHIVE_OK) throw std::runtime_error(::archive_error_string(writer_.get()));
}

}  // namespace packing
