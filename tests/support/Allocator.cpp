#include "Allocator.hpp"

#include <cerrno>

#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

thread_local std::size_t countdown = 0;       // 0: nothing is to fail
thread_local std::size_t next_countdown = 0;  // once something has failed
thread_local bool has_failed = false;
thread_local Allocator::Counts counts{};

bool fails() noexcept {
  if (countdown == 0 || --countdown > 0) return false;
  countdown = next_countdown;
  has_failed = true;
  ++counts.failed;
  errno = ENOMEM;
  return true;
}

// No block has a size of 0.
void* counted(void* block, std::size_t before = 0) noexcept {
  if (block == nullptr) return block;
  const std::size_t now = malloc_usable_size(block);
  counts.live_bytes += static_cast<long>(now) - static_cast<long>(before);
  if (now > before) {
    ++counts.calls;
    counts.bytes += now - before;
    if (before == 0) ++counts.live;
  }
  return block;
}

}  // namespace

void Allocator::fail_at(std::size_t n, std::size_t period) noexcept {
  next_countdown = period;
  has_failed = false;
  countdown = n;
}
bool Allocator::stop_failing() noexcept {
  countdown = 0;
  return has_failed;
}
Allocator::Counts Allocator::so_far() noexcept { return counts; }

#pragma GCC visibility push(default)
extern "C" {
void* malloc(std::size_t size) noexcept { return fails() ? nullptr : counted(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) noexcept {
  return fails() ? nullptr : counted(__libc_calloc(count, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return fails() ? nullptr : counted(__libc_memalign(alignment, size));
}
void* realloc(void* block, std::size_t size) noexcept {
  const std::size_t before = block == nullptr ? 0 : malloc_usable_size(block);
  return fails() ? nullptr : counted(__libc_realloc(block, size), before);
}
void free(void* block) noexcept {
  if (block != nullptr) {
    --counts.live;
    counts.live_bytes -= static_cast<long>(malloc_usable_size(block));
  }
  __libc_free(block);
}
}
#pragma GCC visibility pop
