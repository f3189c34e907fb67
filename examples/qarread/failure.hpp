#pragma once

#include <string>

namespace qarread {

/// Why a path failed.
struct Failure {
  std::string status;  // for programs
  std::string text;    // for people, to be printed after the path
};

/// Describes the exception that is being handled.
Failure currentFailure();

}  // namespace qarread
