#pragma once

#include <algorithm>
#include <cstddef>

namespace ku::i18n::detail {

/// How much goes to ICU at a time where our own ways have met something that they do not know: little, as long as
/// that is rare, since they are faster; much, where they would only get in the way.
class Pace {
public:
  std::size_t run() const noexcept { return run_; }

  /// `taken` units by our own ways since the last run.
  void adapt(std::size_t taken) noexcept {
    run_ = taken < 2 * run_ ? std::min(2 * run_, most) : std::max(run_ / 2, least);
  }

private:
  static constexpr std::size_t least = 16;
  static constexpr std::size_t most = 4096;

  std::size_t run_ = least;
};

}  // namespace ku::i18n::detail
