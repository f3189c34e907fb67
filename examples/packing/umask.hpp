#pragma once

#include <sys/stat.h>

namespace packing {

/// The permissions that new files of this process lack. It can only be asked by setting it.
inline mode_t currentUmask() {
  const auto mask = ::umask(0);
  ::umask(mask);
  return mask;
}

}  // namespace packing
