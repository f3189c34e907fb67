#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace qarread {

/// Captures the notices that the library prints through `std::cout`, so that they do not mix with the content.
class Notices {
public:
  Notices() : standardOutput_(std::cout.rdbuf(text_.rdbuf())) {}
  ~Notices() { std::cout.rdbuf(standardOutput_); }
  Notices(const Notices&) = delete;
  Notices& operator=(const Notices&) = delete;

  /// The lines captured since the last call.
  std::istringstream take() {
    std::istringstream lines(text_.str());
    text_.str("");
    return lines;
  }

private:
  std::stringstream text_;
  std::streambuf* standardOutput_;
};

}  // namespace qarread
