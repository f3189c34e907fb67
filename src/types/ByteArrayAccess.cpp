#include "ByteArrayAccess.hpp"

#include <cstring>
#include <utility>

namespace Korvane::qardatainterfaces {

void ByteArrayAccess::adopt(QARByteArray& array, boost::shared_array<unsigned char>&& storage,
                            unsigned long size) noexcept {
  array.storage_ = std::move(storage);
  array.size_ = size;
  array.position_ = 0;
}

void ByteArrayAccess::swap(QARByteArray& one, QARByteArray& other) noexcept {
  one.storage_.swap(other.storage_);
  std::swap(one.size_, other.size_);
  std::swap(one.position_, other.position_);
}

void ByteArrayAccess::release(QARByteArray& array) noexcept { adopt(array, {}, 0); }

void ByteArrayAccess::wipe(QARByteArray& array) noexcept {
  if (array.size_ > 0) explicit_bzero(array.storage_.get(), array.size_);
}

}  // namespace Korvane::qardatainterfaces
