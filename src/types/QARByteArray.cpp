#include <qardatainterfaces/QARByteArray.hpp>

#include "ByteArrayAccess.hpp"

#include <algorithm>

namespace Korvane::qardatainterfaces {

QARByteArray::QARByteArray() = default;

QARByteArray::QARByteArray(const unsigned char* data, unsigned long size)
    : storage_(new unsigned char[size]), size_(size) {
  std::copy_n(data, size, storage_.get());
}

QARByteArray::QARByteArray(const std::string& text)
    : QARByteArray(reinterpret_cast<const unsigned char*>(text.data()), text.size()) {}

QARByteArray::QARByteArray(const QARByteArray& other) : QARByteArray(other.begin(), other.size_) {}

QARByteArray::~QARByteArray() = default;

QARByteArray& QARByteArray::operator=(const QARByteArray& other) {
  if (this != &other) {
    QARByteArray copy(other);
    ByteArrayAccess::swap(*this, copy);
  }
  return *this;
}

bool QARByteArray::operator==(const QARByteArray& other) const {
  const bool both_or_neither_stored = (storage_ == nullptr) == (other.storage_ == nullptr);
  return both_or_neither_stored && size_ == other.size_ && std::equal(begin(), end(), other.begin());
}

unsigned long QARByteArray::read(unsigned char* out, unsigned long count) {
  const unsigned long delivered = std::min(count, size_ - position_);
  std::copy_n(begin() + position_, delivered, out);
  position_ += delivered;
  return delivered;
}

const unsigned char* QARByteArray::begin() const { return storage_.get(); }
const unsigned char* QARByteArray::end() const { return begin() + size_; }
unsigned long QARByteArray::size() const { return size_; }

}  // namespace Korvane::qardatainterfaces
