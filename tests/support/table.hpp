#pragma once

#include "content.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

/// A line of a table: its fields, and where it stands.
struct Row : std::vector<std::string> {
  std::string place;
};

/// '' is nothing, X*N that often X, @FROM..TO a part of `pattern`, and in any other field \xHH is a byte.
inline std::string field(const std::string& text) {
  std::size_t from = 0, to = 0;
  char byte = 0;
  if (text == "''") return "";
  if (std::sscanf(text.c_str(), "@%zu..%zu", &from, &to) == 2)
    return Korvane::qardatainterfaces::pattern(to).substr(from);
  if (std::sscanf(text.c_str(), "%c*%zu", &byte, &to) == 2) return std::string(to, byte);
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text.compare(i, 2, "\\x") == 0) {
      bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
      i += 3;
    } else {
      bytes += text[i];
    }
  return bytes;
}

/// The rows of a text file in tests/: at least two blanks stand between fields, and # begins a comment.
inline std::vector<Row> table(const std::string& name) {
  std::ifstream file(ZRQAR_SOURCE_DIR "/tests/" + name);
  std::vector<Row> rows;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    rows.emplace_back();
    rows.back().place = name + ':' + std::to_string(number);
    for (std::size_t from = 0, gap = 0; from < line.size(); from = line.find_first_not_of(' ', gap)) {
      gap = line.find("  ", from);
      rows.back().push_back(field(line.substr(from, gap - from)));
    }
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}
