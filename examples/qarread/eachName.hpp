#pragma once

#include <functional>
#include <string>

namespace qarread {

/// Calls `take` for each name in the file. A zero byte ends each name; it may be missing after the last one. "-" is
/// standard input. Throws `std::system_error` if the file cannot be read, and what `take` throws.
void eachName(const std::string& file, const std::function<void(const std::string&)>& take);

}  // namespace qarread
