#pragma once

#include <boost/shared_array.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// An owned run of bytes with a read position that only moves forward.
///
/// Ownership  Copies are deep: no two arrays share storage. Pointers from `begin` and `end` are valid until the
///            array is assigned to or destroyed.
/// State      A default-constructed array has no storage. Every other constructor and every assignment from another
///            array makes storage, even for 0 bytes. `operator==` distinguishes the two.
/// Errors     Construction and assignment may throw `std::bad_alloc`; an assignment that throws leaves its target
///            unchanged. No other member fails.
/// Units      Sizes and positions are bytes in 64 bits.
/// Threads    Distinct arrays are independent. One array may be read by several threads through its `const`
///            members; `read` and assignment require that no other thread uses it.
class [[gnu::visibility("default")]] QARByteArray {
public:
  /// No storage, size 0, read position 0.
  QARByteArray();
  /// A copy of the `size` bytes at `data`. Requires: `data` points to `size` bytes; it may be null if `size` is 0.
  QARByteArray(const unsigned char* data, unsigned long size);
  /// A copy of the bytes of `text`, without a terminating zero.
  QARByteArray(const std::string& text);
  /// A copy of the bytes of `other`. The copy always has storage; its read position is 0.
  QARByteArray(const QARByteArray& other);
  virtual ~QARByteArray();

  /// Replaces the bytes with a copy of those of `other` and resets the read position to 0.
  /// Assigning an array to itself changes nothing, the read position included.
  QARByteArray& operator=(const QARByteArray& other);

  /// Whether sizes and bytes are equal, and both or neither have storage. Read positions are not compared.
  bool operator==(const QARByteArray& other) const;

  /// Copies the next `count` bytes, or as many as are left, to `out`. Moves the read position past them and returns
  /// their number: 0 at the end. Requires: `out` has room for them; it may be null if there are none.
  unsigned long read(unsigned char* out, unsigned long count);

  /// The first byte; null without storage.
  const unsigned char* begin() const;
  /// One past the last byte: `begin() + size()`.
  const unsigned char* end() const;
  /// The number of bytes.
  unsigned long size() const;

private:
  friend class ByteArrayAccess;

  boost::shared_array<unsigned char> storage_;
  unsigned long size_ = 0;
  unsigned long position_ = 0;
};

}  // namespace Korvane::qardatainterfaces
