#pragma once

#include <algorithm>
#include <cstddef>

namespace ku::i18n::detail {

/// The number of bytes that decoder and encoder convert after the kernel has stopped. It is small while the kernel
/// rarely stops, since decoder and encoder are slower. It is large while the kernel converts almost nothing between
/// stops.
class Pace {
public:
  std::size_t run() const noexcept { return run_; }

  /// The kernel converted `bytes` bytes since the last run.
  void adapt(std::size_t bytes) noexcept {
    run_ = bytes < 4 * run_ ? std::min(4 * run_, most) : std::max(run_ / 4, least);
  }

private:
  static constexpr std::size_t least = 16;
  static constexpr std::size_t most = 16384;

  std::size_t run_ = least;
};

}  // namespace ku::i18n::detail
