#pragma once

#include <string>

namespace qarread {

/// Why a path has failed.
struct Failure {
  std::string status;  // for programs
  std::string text;    // for people, to be put behind the path
};

/// What the exception that is being handled tells.
Failure currentFailure();

}  // namespace qarread
