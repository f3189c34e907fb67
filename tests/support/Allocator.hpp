#pragma once

#include <cstddef>

/// The allocator of this program, which counts and fails for each thread by itself: `operator new`, the C library's
/// functions and through them ICU's all come here. Link support/Allocator.cpp; sanitizers have one of their own.
struct Allocator {
  /// From now on, the n-th allocation of this thread fails, and every `period`-th after that; only that one if
  /// `period` is 0. n counts from 1.
  static void fail_at(std::size_t n, std::size_t period) noexcept;
  /// Ends that, and tells whether any has failed.
  static bool stop_failing() noexcept;

  /// What this thread has asked for.
  struct Counts {
    std::size_t calls;   ///< that gave memory, or more of it
    std::size_t bytes;   ///< that they gave
    std::size_t failed;  ///< calls that were made to fail
    long live;           ///< blocks that have not been given back
    long live_bytes;     ///< of these blocks
  };
  static Counts so_far() noexcept;
};
