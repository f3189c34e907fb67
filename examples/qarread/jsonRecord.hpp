#pragma once

#include "Record.hpp"

#include <string>

namespace qarread {

/// The record as a JSON object on one line, which is UTF-8; with what --check has found, if that is wanted.
std::string jsonRecord(const Record& record, bool withLosses);

}  // namespace qarread
