#pragma once

#include <string>

namespace qarread {

/// Makes the locale that of content and messages. Throws `UsageError`, which names the encoding, if that is refused.
void setContentLocale(const std::string& name);

}  // namespace qarread
