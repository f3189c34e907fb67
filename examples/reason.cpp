#include "reason.hpp"

namespace qarread {

std::string inParentheses(const std::error_code& reason) { return reason ? " (" + reason.message() + ')' : ""; }

std::string withReason(const std::exception& error) {
  try {
    std::rethrow_if_nested(error);
  } catch (const std::system_error& reason) {
    return error.what() + inParentheses(reason.code());
  }
  return error.what();
}

}  // namespace qarread
