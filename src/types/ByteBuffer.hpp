#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <cstdlib>
#include <memory>

namespace Korvane::qardatainterfaces {

/// Bytes on their way into a `QARByteArray` while their number is not certain: never cleared, and moved only when
/// the allocator has to.
class ByteBuffer {
public:
  /// No bytes, and no memory.
  ByteBuffer() noexcept = default;
  explicit ByteBuffer(unsigned long capacity) { resize(capacity); }

  unsigned char* data() noexcept { return bytes_.get(); }
  unsigned long capacity() const noexcept { return capacity_; }
  /// Keeps what fits. If it throws, nothing has changed.
  void resize(unsigned long capacity);
  /// The same; tells whether there was memory.
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
