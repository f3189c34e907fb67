#pragma once

#include "Record.hpp"

#include <string>

namespace qarread {

/// The record as a JSON object in UTF-8 on one line, optionally with the findings of --check.
std::string jsonRecord(const Record& record, bool withLosses);

}  // namespace qarread
