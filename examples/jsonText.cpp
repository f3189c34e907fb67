#include "jsonText.hpp"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace qarread {
namespace {

using nlohmann::json;

bool isUtf8(const std::string& text) try {
  if (std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) return true;
  static_cast<void>(json(text).dump());
  return true;
} catch (const json::type_error&) {
  return false;
}

}  // namespace

json toJsonText(std::string bytes) {
  if (isUtf8(bytes)) return bytes;
  return {{"hex", hexadecimal(bytes, "")}};
}

std::string fromJsonText(const json& value) {
  if (value.is_string()) return value.get_ref<const std::string&>();
  const auto& digits = value.at("hex").get_ref<const std::string&>();
  std::string text(digits.size() / 2, '\0');
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    unsigned char byte = 0;
    if (std::from_chars(&digits[i], digits.data() + std::min(i + 2, digits.size()), byte, 16).ptr != &digits[i] + 2)
      throw std::invalid_argument("invalid hexadecimal digits");
    text[i / 2] = static_cast<char>(byte);
  }
  return text;
}

std::string hexadecimal(const std::string& bytes, const char* separator) {
  constexpr const char* digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += separator;
    text.append({digits[byte >> 4], digits[byte & 0xF]});
  }
  return text;
}

}  // namespace qarread
