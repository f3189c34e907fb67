#include "ByteBuffer.hpp"

#include "ByteStorage.hpp"

#include <algorithm>
#include <new>

namespace Korvane::qardatainterfaces {

ByteBuffer::ByteBuffer(unsigned long capacity) { resize(capacity); }

void ByteBuffer::resize(unsigned long capacity) {
  // Storage of zero bytes is storage: realloc would take it away.
  void* const moved = std::realloc(bytes_.get(), std::max(capacity, 1UL));
  if (moved == nullptr) throw std::bad_alloc();
  static_cast<void>(bytes_.release());
  bytes_.reset(static_cast<unsigned char*>(moved));
  capacity_ = capacity;
}

void ByteBuffer::moveTo(QARByteArray& array, unsigned long size) {
  if (size != capacity_) resize(size);
  ByteStorage::adopt(array, boost::shared_array<unsigned char>(bytes_.release(), Free()), size);
}

}  // namespace Korvane::qardatainterfaces
