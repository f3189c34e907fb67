#pragma once

#include <sys/stat.h>

namespace packing {

/// The umask of this process. It can only be queried by setting it.
inline mode_t currentUmask() {
  const auto mask = ::umask(0);
  ::umask(mask);
  return mask;
}

}  // namespace packing
