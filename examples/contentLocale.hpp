#pragma once

#include <string>

namespace qarread {

/// Sets the locale of content and messages. Throws `UsageError` if the locale or its encoding is unknown.
void setContentLocale(const std::string& name);

/// Throws `UsageError` if the encoding of the locale of content is unknown.
void checkLocalCodePage();

}  // namespace qarread
