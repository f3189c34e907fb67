#pragma once

#include <cerrno>

namespace Korvane::qardatainterfaces {

/// The result of the system call `call`, which is repeated while signals interrupt it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Opens `path` and follows links. Waits as long as opening takes, for example for the writer of a FIFO or for a
/// lease. The only socket that it opens is standard input. If the result is negative, `errno` has the reason.
int openAny(const char* path) noexcept;

/// Opens a regular file at `path`. Follows no link; waits for a lease, but not for the writer of a FIFO. It may
/// succeed for another kind of file, so check the kind. If the result is negative, `errno` has the reason.
int openRegular(const char* path) noexcept;

}  // namespace Korvane::qardatainterfaces
