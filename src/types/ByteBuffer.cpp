#include "ByteBuffer.hpp"

#include "ByteArrayAccess.hpp"

#include <algorithm>
#include <cstdint>
#include <new>

#include <sys/mman.h>

namespace Korvane::qardatainterfaces {
namespace {

// In buffers of this size page faults take most of the time. The kernel may ignore the advice.
void askForHugePages(unsigned char* bytes, unsigned long capacity) noexcept {
  constexpr unsigned long large = 16UL << 20;
  if (capacity < large) return;
  constexpr std::uintptr_t page = 4096;
  const auto begin = (reinterpret_cast<std::uintptr_t>(bytes) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(bytes) + capacity) / page * page;
  static_cast<void>(::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
}

}  // namespace

void ByteBuffer::resize(unsigned long capacity) {
  if (!tryResize(capacity)) throw std::bad_alloc();
}

bool ByteBuffer::tryResize(unsigned long capacity) noexcept {
  // realloc to size 0 would free the storage, but storage of zero bytes differs from no storage.
  void* const moved = std::realloc(bytes_.get(), std::max(capacity, 1UL));
  if (moved == nullptr) return false;
  static_cast<void>(bytes_.release());
  bytes_.reset(static_cast<unsigned char*>(moved));
  if (capacity > capacity_) askForHugePages(bytes_.get(), capacity);
  capacity_ = capacity;
  return true;
}

void ByteBuffer::moveTo(QARByteArray& array, unsigned long size) {
  constexpr unsigned long slack = 64;  // so few unused bytes are not worth a call of realloc
  if (capacity_ - size > slack) resize(size);
  ByteArrayAccess::adopt(array, boost::shared_array<unsigned char>(bytes_.release(), Free()), size);
}

}  // namespace Korvane::qardatainterfaces
