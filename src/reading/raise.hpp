#pragma once

#include <system_error>

namespace tavik_core {
class BaseMsgID;
}

namespace Korvane::qardatainterfaces {

/// Throws a `DeployedException` for the message, with a nested `std::system_error` for `why`.
[[noreturn]] void raise(const tavik_core::BaseMsgID& id, const std::error_code& why);

}  // namespace Korvane::qardatainterfaces
