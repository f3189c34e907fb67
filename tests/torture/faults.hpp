#pragma once

#include <cstddef>

/// Has the allocator fail for the thread that asks for it: `operator new`, the C library's functions and through them
/// ICU's, which all come here.
struct Faults {
  /// From now on, the n-th allocation of this thread fails, and with `lasting` every later one. n counts from 1.
  static void arm(std::size_t n, bool lasting) noexcept;
  /// Ends that, and tells whether any has failed.
  static bool disarm() noexcept;
  /// How many blocks this thread has and has not given back.
  static long live() noexcept;
  static std::size_t injected() noexcept;
};
