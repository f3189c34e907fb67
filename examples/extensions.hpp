#pragma once

#include <string>
#include <vector>

namespace qarread {

/// The extensions of a list such as "txt,.md", each with its leading dot. Throws `UsageError`.
std::vector<std::u16string> parseExtensions(const std::string& list);

}  // namespace qarread
