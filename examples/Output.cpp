#include "Output.hpp"

#include <cerrno>

#include <unistd.h>

namespace qarread {
namespace {

[[noreturn]] void fail() { throw OutputError(errno, std::generic_category(), "standard output"); }

}  // namespace

void Output::write(const void* bytes, std::size_t size) {
  const auto* next = static_cast<const char*>(bytes);
  while (size > 0) {
    const auto count = ::write(STDOUT_FILENO, next, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    used_ = true;
    next += count;
    size -= static_cast<std::size_t>(count);
  }
}

void Output::finish() {
  if (used_ && ::close(STDOUT_FILENO) != 0 && errno != EINTR) fail();
}

}  // namespace qarread
