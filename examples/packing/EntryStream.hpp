#pragma once

#include "ArchiveReader.hpp"
#include "Fingerprint.hpp"

#include <opc/InputStream.hpp>

namespace packing {

/// The content of the current entry of an archive, as a stream for the library's readers. Refers to the archive;
/// throws what `ArchiveReader` throws.
class EntryStream final : public opc::InputStream {
public:
  explicit EntryStream(ArchiveReader& archive) : archive_(archive) {}

  std::uint64_t read(void* buffer, std::uint64_t size) override {
    const auto count = archive_.read(buffer, size);
    exhausted_ = size > 0 && count == 0;
    fingerprint_.add(buffer, count);
    return count;
  }
  bool exhausted() override { return exhausted_; }

  /// The fingerprint of the bytes delivered so far.
  const Fingerprint& fingerprint() const noexcept { return fingerprint_; }

private:
  ArchiveReader& archive_;
  Fingerprint fingerprint_;
  bool exhausted_ = false;
};

}  // namespace packing
