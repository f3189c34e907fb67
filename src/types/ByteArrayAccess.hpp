#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

namespace Korvane::qardatainterfaces {

/// What the library may do with a byte array that its callers may not.
class ByteArrayAccess {
public:
  ByteArrayAccess() = delete;

  /// Has `array` own `storage`, of which the first `size` bytes are its content, from the first byte on.
  static void adopt(QARByteArray& array, boost::shared_array<unsigned char>&& storage, unsigned long size) noexcept;
  static void swap(QARByteArray& one, QARByteArray& other) noexcept;
  /// Back to having no storage.
  static void release(QARByteArray& array) noexcept;
  /// Overwrites the bytes; they are not just forgotten.
  static void wipe(QARByteArray& array) noexcept;
};

}  // namespace Korvane::qardatainterfaces
