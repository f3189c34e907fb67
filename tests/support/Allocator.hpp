#pragma once

#include <cstddef>

/// An allocator for tests, which counts and fails for each thread separately. It replaces `operator new` and the C
/// library's functions, which ICU uses. Link support/Allocator.cpp; not under sanitizers, which have their own.
struct Allocator {
  /// Makes the n-th allocation of this thread fail, counted from 1, and every `period`-th one after it. If `period`
  /// is 0, only the n-th one fails.
  static void fail_at(std::size_t n, std::size_t period) noexcept;
  /// Lets allocations succeed again, and returns whether any has failed.
  static bool stop_failing() noexcept;

  /// The allocations of this thread.
  struct Counts {
    std::size_t calls;   ///< calls that allocated a block or enlarged one
    std::size_t bytes;   ///< bytes that these calls added
    std::size_t failed;  ///< calls that were made to fail
    long live;           ///< blocks that have not been freed
    long live_bytes;     ///< bytes of these blocks
  };
  static Counts so_far() noexcept;
};
