#include "Fingerprint.hpp"

#include <libdeflate.h>

namespace packing {

void Fingerprint::add(const void* bytes, std::size_t size) {
  size_ += size;
  crc_ = ::libdeflate_crc32(crc_, bytes, size);
}

}  // namespace packing
