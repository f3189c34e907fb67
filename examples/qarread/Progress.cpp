#include "Progress.hpp"

#include <iostream>
#include <string>

namespace qarread {
namespace {

constexpr const char* eraseLine = "\r\033[K";

}  // namespace

void Progress::addPath() {
  ++paths_;
  show();
}

void Progress::addBytes(std::uint64_t count) {
  bytes_ += count;
  show();
}

void Progress::erase() {
  if (shown_) std::cerr << eraseLine;
  shown_ = false;
}

void Progress::show() {
  if (!wanted_) return;
  const auto now = Clock::now();
  if (now < next_) return;
  next_ = now + std::chrono::milliseconds(100);
  std::cerr << eraseLine + std::to_string(paths_) + " paths, " + std::to_string(bytes_ / 1'000'000) + " MB";
  shown_ = true;
}

}  // namespace qarread
