#include "table.hpp"

#include "content.hpp"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

namespace {

/// The value of the first `digits` characters, which must be hexadecimal digits; none if they are not.
std::optional<unsigned> hexadecimal(std::string_view text, std::size_t digits) {
  unsigned value = 0;
  const auto* const end = text.data() + std::min(text.size(), digits);
  return std::from_chars(text.data(), end, value, 16).ptr == text.data() + digits ? std::optional(value)
                                                                                  : std::nullopt;
}

bool is_word(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

Row::Row(std::string file, int line, std::string text) : file_(std::move(file)), line_(line), text_(std::move(text)) {
  for (std::size_t from = 0, gap = 0; from < text_.size(); from = text_.find_first_not_of(' ', gap)) {
    gap = text_.find("  ", from);
    fields_.push_back(text_.substr(from, gap - from));
  }
}

std::string Row::at(std::size_t index) const {
  if (index >= fields_.size()) fail("field " + std::to_string(index + 1) + " is missing");
  const auto& field = fields_[index];
  std::size_t from = 0, to = 0;
  char character = 0;
  if (field == "''") return "";
  if (std::sscanf(field.c_str(), "@%zu..%zu", &from, &to) == 2)
    return Korvane::qardatainterfaces::pattern(to).substr(from);
  if (std::sscanf(field.c_str(), "%c*%zu", &character, &to) == 2) return std::string(to, character);
  std::string bytes;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field.compare(i, 2, "\\x") != 0) {
      bytes += field[i];
      continue;
    }
    const auto byte = hexadecimal(std::string_view(field).substr(i + 2), 2);
    if (!byte) fail("two hexadecimal digits must follow \\x");
    bytes += static_cast<char>(*byte);
    i += 3;
  }
  return bytes;
}

std::u16string Row::units(std::size_t index) const {
  const auto field = at(index);
  std::u16string units;
  for (std::size_t from = 0, to = 0; from < field.size(); from = to + 6) {
    to = std::min(field.find("\\u", from), field.size());
    const std::u8string text(reinterpret_cast<const char8_t*>(field.data()) + from, to - from);
    units += std::filesystem::path(text).u16string();
    if (to == field.size()) break;
    const auto unit = hexadecimal(std::string_view(field).substr(to + 2), 4);
    if (!unit) fail("four hexadecimal digits must follow \\u");
    units += static_cast<char16_t>(*unit);
  }
  return units;
}

std::size_t Row::number(std::size_t index) const {
  const auto field = at(index);
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  if (error != std::errc() || end != field.data() + field.size()) fail("'" + field + "' is not a number");
  return value;
}

std::string Row::last(std::size_t after) const {
  if (after >= size()) fail("too few fields");
  return at(size() - 1 - after);
}

std::vector<Row> table(const std::string& file) {
  std::ifstream lines(ZRQAR_SOURCE_DIR "/" + file);
  std::vector<Row> rows;
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number)
    if (!line.empty() && line[0] != '#') rows.emplace_back(file, number, line);
  if (rows.empty()) throw TableError(file + ": no rows");
  return rows;
}

std::string test_name(const std::string& text) {
  std::string name;
  for (const char c : text)
    if (is_word(c))
      name += c;
    else if (!name.empty() && name.back() != '_')
      name += '_';
  while (!name.empty() && name.back() == '_') name.pop_back();
  return name;
}

std::string RowTest::name(const testing::TestParamInfo<Row>& test) {
  return test_name("line " + std::to_string(test.param.line()) + ' ' + test.param.text().substr(0, 50));
}
