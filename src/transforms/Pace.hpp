#pragma once

#include <algorithm>
#include <cstddef>

namespace Korvane::qardatainterfaces {

/// How many bytes go through UTF-16 where the direct way has met something that it does not know: few, as long as
/// that is rare, since it is the slower way; many, where the direct way would only get in between.
class Pace {
public:
  static constexpr std::size_t most = 16384;

  std::size_t run() const noexcept { return run_; }

  /// `taken` bytes went the direct way since the last run.
  void adapt(std::size_t taken) noexcept {
    run_ = taken < 4 * run_ ? std::min(4 * run_, most) : std::max(run_ / 4, least);
  }

private:
  static constexpr std::size_t least = 16;

  std::size_t run_ = least;
};

}  // namespace Korvane::qardatainterfaces
