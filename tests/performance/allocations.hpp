#pragma once

#include <cstddef>

/// What this program has asked of the allocator since its start, in all threads.
struct Allocations {
  std::size_t count;  // of calls that gave memory or more of it
  std::size_t bytes;  // that they gave
  static Allocations so_far() noexcept;
};
