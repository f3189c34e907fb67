#pragma once

#include <cstddef>
#include <cstdint>

namespace packing {

/// Size and checksum of content in the archive.
class Fingerprint {
public:
  Fingerprint() = default;
  Fingerprint(std::uint64_t size, std::uint32_t crc) : size_(size), crc_(crc) {}

  void add(const void* bytes, std::size_t size);

  std::uint64_t size() const noexcept { return size_; }
  /// CRC-32 as in gzip (ISO 3309).
  std::uint32_t crc() const noexcept { return crc_; }
  bool operator==(const Fingerprint&) const = default;

private:
  std::uint64_t size_ = 0;
  std::uint32_t crc_ = 0;
};

}  // namespace packing
