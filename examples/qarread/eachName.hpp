#pragma once

#include <functional>
#include <string>

namespace qarread {

/// Calls `take` for each name in the file, of which each ends with a zero byte, or with the file. "-" is standard
/// input. Throws `std::system_error` if the file cannot be read, and what `take` throws.
void eachName(const std::string& file, const std::function<void(const std::string&)>& take);

}  // namespace qarread
