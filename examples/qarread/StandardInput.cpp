#include "StandardInput.hpp"

#include "../deliver.hpp"
#include "../reason.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <unistd.h>

namespace qarread {

std::uint64_t StandardInput::read(void* buffer, std::uint64_t size) {
  constexpr std::uint64_t most = 1U << 30;
  ::ssize_t count = 0;
  do {
    count = ::read(STDIN_FILENO, buffer, std::min(size, most));
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw ReadFailure("not_good", "cannot be read" + inParentheses({errno, std::generic_category()}));
  exhausted_ = size > 0 && count == 0;
  count_ += static_cast<std::uint64_t>(count);
  return static_cast<std::uint64_t>(count);
}

}  // namespace qarread
