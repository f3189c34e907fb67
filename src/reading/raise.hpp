#pragma once

#include <system_error>

namespace tavik_core {
class BaseMsgID;
}

namespace Korvane::qardatainterfaces {

/// Throws the exception of that message, nested around a `std::system_error` that says why.
[[noreturn]] void raise(const tavik_core::BaseMsgID& id, const std::error_code& why);

}  // namespace Korvane::qardatainterfaces
