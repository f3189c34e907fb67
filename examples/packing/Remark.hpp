#pragma once

#include <functional>
#include <string>

namespace packing {

/// Receives a remark about an entry.
using Remark = std::function<void(const std::string& name, const std::string& text)>;

}  // namespace packing
