#include "faults.hpp"

#include <cerrno>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

thread_local std::size_t countdown = 0;  // 0: not armed
thread_local bool lasts = false, has_failed = false;
thread_local long blocks = 0;
thread_local std::size_t failures = 0;

bool fails() noexcept {
  if (countdown == 0 || --countdown > 0) return false;
  if (lasts) countdown = 1;
  has_failed = true;
  ++failures;
  errno = ENOMEM;
  return true;
}

void* counted(void* block) noexcept {
  if (block != nullptr) ++blocks;
  return block;
}

}  // namespace

void Faults::arm(std::size_t n, bool lasting) noexcept {
  lasts = lasting;
  has_failed = false;
  countdown = n;
}
bool Faults::disarm() noexcept {
  countdown = 0;
  return has_failed;
}
long Faults::live() noexcept { return blocks; }
std::size_t Faults::injected() noexcept { return failures; }

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
  if (fails()) return nullptr;
  void* const moved = __libc_realloc(block, size);
  return block == nullptr ? counted(moved) : moved;
}
void free(void* block) noexcept {
  if (block != nullptr) --blocks;
  __libc_free(block);
}
}
#pragma GCC visibility pop
