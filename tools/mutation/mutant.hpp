// Included before every source of the mutated tree: selects the mutant that is active in this process.
#pragma once

#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace mutation {

// Read once, before other code of the program or library runs. Each library has its own object.
struct [[gnu::visibility("hidden")]] Choice {
  int active = 0;       // number of the active mutant; 0: none; negative: none, and reached mutants are recorded
  char* met = nullptr;  // a byte for each mutant, in a file that the processes of a test share

  Choice() {
    if (const char* const number = std::getenv("MUTANT")) active = std::atoi(number);
    const char* const file = active < 0 ? std::getenv("MUTANTS_MET") : nullptr;
    if (!file) return;
    const int handle = ::open(file, O_RDWR | O_CLOEXEC);
    void* const bytes = ::mmap(nullptr, static_cast<std::size_t>(-active), PROT_WRITE, MAP_SHARED, handle, 0);
    if (bytes == MAP_FAILED) std::abort();
    met = static_cast<char*>(bytes);
    ::close(handle);
  }
};
[[gnu::visibility("hidden")]] inline Choice choice;

[[gnu::visibility("hidden"), gnu::noinline]] inline bool record(int number) noexcept {
  if (choice.met) choice.met[number] = 1;
  return false;
}

// Whether this mutant is active.
[[gnu::visibility("hidden")]] inline bool mutant(int number) noexcept {
  return choice.active == number || (choice.active < 0 && record(number));
}

// Whether reached mutants are recorded.
[[gnu::visibility("hidden")]] inline bool records() noexcept { return choice.met != nullptr; }

// Whether this mutant is active. It is recorded only if it makes a difference.
[[gnu::visibility("hidden")]] inline bool mutant(int number, bool differs) noexcept {
  return choice.active == number || (differs && record(number));
}

// The first function for constexpr functions, which are not mutated when the compiler evaluates them.
[[gnu::visibility("hidden")]] constexpr bool constexpr_mutant(int number) noexcept {
  return !__builtin_is_constant_evaluated() && mutant(number);
}

template <class Value>
constexpr Value next(Value value) noexcept {
  return static_cast<Value>(value + 1);
}

}  // namespace mutation
