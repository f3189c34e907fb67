#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/// What is wrong with a table: `tests/reading/sources.txt:17: ...`.
struct TableError : std::logic_error {
  using std::logic_error::logic_error;
};

/// A line of a table, whose fields are separated by two blanks or more.
///
/// `''` is an empty field, `x*300` is 300 times this character, and `@20..50` is this range of bytes of `pattern()`.
/// In any other field `\xHH` is a byte, and in UTF-16 `\uHHHH` is a unit. A field is checked when it is used, so an
/// invalid one fails only the test of its row.
class Row {
public:
  Row(std::string file, int line, std::string text);

  /// The bytes that a field stands for; fields are counted from 0. Raises `TableError` if there is no such field.
  std::string at(std::size_t index) const;
  /// The field, which is UTF-8, as UTF-16.
  std::u16string units(std::size_t index) const;
  /// The field as a number.
  std::size_t number(std::size_t index) const;
  /// The field that has this many fields after it.
  std::string last(std::size_t after = 0) const;
  std::size_t size() const { return fields_.size(); }

  /// `tests/reading/sources.txt:17`, from the root of the project.
  std::string place() const { return file_ + ':' + std::to_string(line_); }
  /// While it exists, failures show the place and the text of the row.
  testing::ScopedTrace trace() const { return {file_.c_str(), line_, text_}; }
  int line() const { return line_; }
  const std::string& text() const { return text_; }

  [[noreturn]] void fail(const std::string& why) const { throw TableError(place() + ": " + why); }

private:
  std::string file_;
  int line_;
  std::string text_;
  std::vector<std::string> fields_;
};
inline void PrintTo(const Row& row, std::ostream* out) { *out << row.place(); }

/// The rows of a text file, which is named from the root of the project. `#` begins a comment.
std::vector<Row> table(const std::string& file);

/// The value of a word. Raises `TableError` if there is none: `...:17: unknown step 'opne'; known: all, open, read`.
template <class Map>
const auto& look_up(const Row& row, const char* what, const Map& words, const std::string& word) {
  const auto found = words.find(word);
  if (found != words.end()) return found->second;
  std::string known;
  for (const auto& entry : words) known += (known.empty() ? "" : ", ") + entry.first;
  row.fail(std::string("unknown ") + what + " '" + word + "'; known: " + known);
}

/// The words in it that a test may have in its name, which are ASCII letters and digits, joined by underscores.
std::string test_name(const std::string& text);

/// A test of one row: `INSTANTIATE_TEST_SUITE_P(, Suite, testing::ValuesIn(table(...)), RowTest::name)`.
class RowTest : public testing::TestWithParam<Row> {
public:
  /// `line_17_` and the beginning of the row.
  static std::string name(const testing::TestParamInfo<Row>& test);

protected:
  const Row& row = GetParam();

private:
  testing::ScopedTrace trace_ = row.trace();
};
