#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace qarread {

/// The system's reason in the form " (Permission denied)", to be appended to a text; empty without a reason.
std::string inParentheses(const std::error_code& reason);

/// The text of `error`, followed by the reason of the exception nested in it, if there is one.
std::string withReason(const std::exception& error);

}  // namespace qarread
