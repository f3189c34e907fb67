// Stands before the C library's allocator and counts. `operator new` comes here as well.

#include "allocations.hpp"

#include <atomic>

#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {

std::atomic<std::size_t> allocations, allocated;

void* counted(void* block, std::size_t before) noexcept {
  const std::size_t now = block == nullptr ? 0 : malloc_usable_size(block);
  if (now > before) {
    ++allocations;
    allocated += now - before;
  }
  return block;
}

}  // namespace

Allocations Allocations::so_far() noexcept { return {allocations, allocated}; }

#pragma GCC visibility push(default)
extern "C" {
void* malloc(std::size_t size) noexcept { return counted(__libc_malloc(size), 0); }
void* calloc(std::size_t count, std::size_t size) noexcept { return counted(__libc_calloc(count, size), 0); }
void* realloc(void* block, std::size_t size) noexcept {
  const std::size_t before = block == nullptr ? 0 : malloc_usable_size(block);
  return counted(__libc_realloc(block, size), before);
}
}
#pragma GCC visibility pop
