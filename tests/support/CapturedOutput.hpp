#pragma once

#include <iostream>
#include <sstream>

/// Captures standard output while this object exists.
class CapturedOutput {
public:
  CapturedOutput() : usual_(std::cout.rdbuf(text_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(usual_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  std::string text() const { return text_.str(); }

private:
  std::ostringstream text_;
  std::streambuf* usual_;
};
