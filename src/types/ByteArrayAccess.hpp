#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

namespace Korvane::qardatainterfaces {

/// Operations on byte arrays that only the library may use.
class ByteArrayAccess {
public:
  ByteArrayAccess() = delete;

  /// Makes `array` own `storage`. Its content is the first `size` bytes; its read position becomes 0.
  static void adopt(QARByteArray& array, boost::shared_array<unsigned char>&& storage, unsigned long size) noexcept;
  static void swap(QARByteArray& one, QARByteArray& other) noexcept;
  /// Makes the array empty, without storage.
  static void release(QARByteArray& array) noexcept;
  /// Overwrites the bytes with zeros; the compiler cannot optimise this away.
  static void wipe(QARByteArray& array) noexcept;
};

}  // namespace Korvane::qardatainterfaces
