#pragma once

#include <algorithm>
#include <cstddef>

namespace ku::i18n::detail {

/// How many bytes go through the decoder and the encoder where the kernel has met something that it does not know:
/// few as long as that is rare, since it is the slower way; many where the kernel would convert next to nothing.
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
