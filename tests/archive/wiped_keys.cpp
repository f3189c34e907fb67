// Searches every block that is freed for the bytes of a key. Built by each compiler as for packages, and with full
// optimisation, since a compiler may remove the overwriting.
#include <qardatainterfaces/QARContext.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include <malloc.h>

namespace {

using Korvane::qardatainterfaces::QARByteArray;
using Korvane::qardatainterfaces::QARContext;

char pattern[24];
int found = 0;
int allocations_left = -1;

void look_and_free(void* block) {
  if (block != nullptr && memmem(block, malloc_usable_size(block), pattern, sizeof pattern) != nullptr) ++found;
  std::free(block);
}

void* allocate(std::size_t size) {
  if (allocations_left == 0) throw std::bad_alloc();
  if (allocations_left > 0) --allocations_left;
  if (void* const block = std::malloc(size)) return block;
  throw std::bad_alloc();
}

int failures = 0;
void expect(bool right, const char* what) {
  if (right) return;
  std::printf("failed: %s\n", what);
  ++failures;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { look_and_free(block); }
void operator delete[](void* block) noexcept { look_and_free(block); }
void operator delete(void* block, std::size_t) noexcept { look_and_free(block); }
void operator delete[](void* block, std::size_t) noexcept { look_and_free(block); }

int main() {
  for (std::size_t i = 0; i < sizeof pattern; ++i) pattern[i] = static_cast<char>(0xA1 + 7 * i);
  const QARByteArray key(std::string(40, 'x') + std::string(pattern, sizeof pattern) + std::string(40, 'x'));
  const QARByteArray none;
  found = 0;
  QARByteArray(key).size();
  expect(std::exchange(found, 0) == 1, "a plain array is found");

  {
    QARContext context;
    for (const auto* const next : {&key, &none, &key})
      for (const auto set : {&QARContext::setTarvoKey, &QARContext::setCompilerKey, &QARContext::setSolutionKey,
                             &QARContext::setEncSolutionKey, &QARContext::setEncKeyHash})
        (context.*set)(*next);
    expect(found == 0, "a key that is replaced");
    QARContext copy(context), target(context);
    copy = QARContext();
    expect(found == 0, "a context that is assigned to");
    int failed = 0;
    for (allocations_left = 0; allocations_left >= 0; ++failed) try {
        target = context;
        allocations_left = -1;
      } catch (const std::bad_alloc&) {
        allocations_left = failed + 1;
      }
    expect(failed > 5 && found == 0, "a copy that runs out of memory");
    expect(target.getEncKeyHash() == key, "the key after that");
  }
  expect(found == 0, "a context that is destroyed");
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
