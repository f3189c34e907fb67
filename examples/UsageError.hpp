#pragma once

#include <stdexcept>

namespace qarread {

/// The command line is wrong.
class UsageError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

}  // namespace qarread
