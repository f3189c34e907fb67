#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace qarread {

/// `bytes` as JSON, whose text is UTF-8: a string if they are UTF-8, else an object of their hexadecimal digits,
/// {"hex": "FF00"}.
nlohmann::json toJsonText(std::string bytes);

/// The bytes that `toJsonText` has made the value of. Throws `nlohmann::json::exception` for another value, and
/// `std::invalid_argument` for digits that are none.
std::string fromJsonText(const nlohmann::json& value);

/// The bytes as hexadecimal digits in capitals, with `separator` between two bytes.
std::string hexadecimal(const std::string& bytes, const char* separator);

}  // namespace qarread
