#pragma once

#include <cstddef>

/// An allocator for tests, which counts and fails for each thread separately. It replaces `operator new` and the C
/// library's functions, which ICU uses. Link support/Allocator.cpp; not under sanitizers, which have their own.
struct Allocator {
  /// Makes the n-th allocation of this thread from now on fail, and every `period`-th after it; only that one if
  /// `period` is 0. n counts from 1.
  static void fail_at(std::size_t n, std::size_t period) noexcept;
  /// Ends the failing, and returns whether any allocation has failed.
  static bool stop_failing() noexcept;

  /// The allocations of this thread.
  struct Counts {
    std::size_t calls;   ///< that gave memory, or more of it
    std::size_t bytes;   ///< that they gave
    std::size_t failed;  ///< calls that were made to fail
    long live;           ///< blocks that have not been given back
    long live_bytes;     ///< of these blocks
  };
  static Counts so_far() noexcept;
};
