// The notations of tables, and the messages about invalid tables.

#include "table.hpp"

#include <map>

namespace {

template <class Ask>
std::string complaint(const std::string& text, Ask ask) try {
  ask(Row("tests/x.txt", 17, text));
  return "";
} catch (const TableError& error) {
  return error.what();
}

TEST(Tables, ExpandTheNotationsOfFields) {
  const Row row("tests/x.txt", 1, "two words  ''   ab*3  a*3  @1..3  \\x41\\x00z  ");
  const std::vector<std::string> fields = {"two words", "", "ab*3", "aaa", "\1\2", std::string("A\0z", 3)};
  for (std::size_t i = 0; i < fields.size(); ++i) EXPECT_EQ(row.at(i), fields[i]);
  EXPECT_EQ(row.size(), fields.size());
  EXPECT_EQ(row.last(2), "aaa");
  EXPECT_EQ(Row("tests/x.txt", 1, "é\\uD800\\u0000\\x41😀").units(0), std::u16string(u"é\xD800\0A😀", 6));
  EXPECT_EQ(test_name(" plain: an_empty FILE, 'ä'. "), "plain_an_empty_FILE");
}

TEST(Tables, ReportThePlaceTheWordAndTheKnownWords) {
  const std::map<std::string, int> steps = {{"open", 1}, {"all", 2}};
  const auto ask = [&](const Row& row) { return look_up(row, "step", steps, row.at(0)); };
  EXPECT_EQ(complaint("opne  f", ask), "tests/x.txt:17: unknown step 'opne'; known: all, open");
  EXPECT_EQ(complaint("open  f", ask), "");
  EXPECT_EQ(complaint("open", [](const Row& row) { row.at(1); }), "tests/x.txt:17: field 2 is missing");
  EXPECT_EQ(complaint("open", [](const Row& row) { row.last(1); }), "tests/x.txt:17: too few fields");
  EXPECT_EQ(complaint("1o", [](const Row& row) { row.number(0); }), "tests/x.txt:17: '1o' is not a number");
  EXPECT_EQ(complaint("\\x4", [](const Row& row) { row.at(0); }),
            "tests/x.txt:17: two hexadecimal digits must follow \\x");
  EXPECT_EQ(complaint("\\u12x4", [](const Row& row) { row.units(0); }),
            "tests/x.txt:17: four hexadecimal digits must follow \\u");
  EXPECT_THROW(table("tests/missing.txt"), TableError);
  EXPECT_FALSE((std::is_base_of_v<std::runtime_error, TableError>)) << "the transcripts expect these of readers";
}

}  // namespace
