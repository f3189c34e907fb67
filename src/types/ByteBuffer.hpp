#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <cstdlib>
#include <memory>

namespace Korvane::qardatainterfaces {

/// A growing buffer of bytes that becomes the content of a `QARByteArray` without a copy. New bytes are not cleared,
/// and resizing moves the bytes only if the allocator has to.
class ByteBuffer {
public:
  /// No bytes, and no memory.
  ByteBuffer() noexcept = default;
  explicit ByteBuffer(unsigned long capacity) { resize(capacity); }

  unsigned char* data() noexcept { return bytes_.get(); }
  unsigned long capacity() const noexcept { return capacity_; }
  /// Keeps the bytes that fit. If it throws, nothing has changed.
  void resize(unsigned long capacity);
  /// The same, but returns whether there was enough memory.
  bool tryResize(unsigned long capacity) noexcept;

  /// Makes the first `size` bytes the content of `array`; this buffer must not be used again.
  /// If it throws, `array` has not changed.
  void moveTo(QARByteArray& array, unsigned long size);

private:
  struct Free {
    void operator()(unsigned char* bytes) const noexcept { std::free(bytes); }
  };
  std::unique_ptr<unsigned char, Free> bytes_;
  unsigned long capacity_ = 0;
};

}  // namespace Korvane::qardatainterfaces
