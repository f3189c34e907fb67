#pragma once

#include <cerrno>

namespace Korvane::qardatainterfaces {

/// The result of `call`, a system call that is repeated as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Opens what is at `path`, links followed, and waits as long as that takes: for the writer of a FIFO, for a lease.
/// Of a socket, only the one that is the standard input can be opened. Negative: `errno` says why.
int openAny(const char* path) noexcept;

/// Opens what is at `path` if it can be a regular file. Follows no link and waits for a lease, but not for the writer
/// of a FIFO. What is opened may still be of another kind. Negative: `errno` says why.
int openRegular(const char* path) noexcept;

}  // namespace Korvane::qardatainterfaces
