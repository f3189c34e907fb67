#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace qarread {

/// `bytes` as JSON: a string if they are UTF-8, else an object with their hexadecimal digits such as {"hex": "FF00"}.
nlohmann::json toJsonText(std::string bytes);

/// The reverse of `toJsonText`. Throws `nlohmann::json::exception` for a value of another form, and
/// `std::invalid_argument` for invalid digits.
std::string fromJsonText(const nlohmann::json& value);

/// The bytes as upper-case hexadecimal digits, with `separator` between bytes.
std::string hexadecimal(const std::string& bytes, const char* separator);

}  // namespace qarread
