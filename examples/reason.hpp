#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace qarread {

/// The system's reason, " (Permission denied)", to be put behind a text; empty if there is none.
std::string inParentheses(const std::error_code& reason);

/// The text of `error`, and the reason that it is nested around, if there is one.
std::string withReason(const std::exception& error);

}  // namespace qarread
