#pragma once

#include <chrono>
#include <cstdint>

namespace qarread {

/// A progress line on standard error for long runs; it appears after half a second.
class Progress {
public:
  explicit Progress(bool wanted) : wanted_(wanted) {}
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void addPath();
  void addBytes(std::uint64_t count);

  /// Erases the progress line before other output; the next update shows it again.
  void erase();

private:
  using Clock = std::chrono::steady_clock;

  void show();

  bool wanted_;
  bool shown_ = false;
  Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);
  std::uint64_t paths_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace qarread
