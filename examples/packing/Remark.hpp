#pragma once

#include <functional>
#include <string>

namespace packing {

/// Tells what is worth to know about an entry.
using Remark = std::function<void(const std::string& name, const std::string& text)>;

}  // namespace packing
