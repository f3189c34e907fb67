#pragma once

#include <string>

namespace qarread {

/// Makes the locale that of content and messages. Throws `UsageError` if nobody knows the locale or its encoding.
void setContentLocale(const std::string& name);

/// Throws `UsageError` if nobody knows the encoding of the locale of content.
void checkLocalCodePage();

}  // namespace qarread
