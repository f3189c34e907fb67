#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

/// What `transcode` executes to convert a mebibyte that often, its own start included; 0 if it could not be counted.
double instructions(const std::string& arguments, int times) {
  const std::string command = "valgrind --tool=callgrind --callgrind-out-file=/dev/null '" TRANSCODE "' " +
                              arguments + " " + std::to_string(times) + " 2>&1";
  std::FILE* const output = ::popen(command.c_str(), "r");
  if (output == nullptr) return 0;
  std::string text;
  for (int byte = std::fgetc(output); byte != EOF; byte = std::fgetc(output)) text += static_cast<char>(byte);
  const bool succeeded = ::pclose(output) == 0;
  const std::string label = "Collected : ";
  const auto found = text.find(label);
  EXPECT_TRUE(succeeded && found != std::string::npos) << "callgrind, of the package valgrind, does not run:\n"
                                                       << text;
  return found == std::string::npos ? 0 : std::stod(text.substr(found + label.size()));
}

struct Case {
  const char* name;
  const char* arguments;
  double limit;  // instructions for each byte of input
};
void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

class Instructions : public testing::TestWithParam<Case> {};

TEST_P(Instructions, OfAByteToUtf8AreFew) {
  const double of_start = instructions(GetParam().arguments, 1);
  const double of_both = instructions(GetParam().arguments, 2);
  const double each = (of_both - of_start) / (1 << 20);
  RecordProperty("instructions", std::to_string(each));
  EXPECT_LE(each, GetParam().limit);
  EXPECT_GT(each, 0);
}

INSTANTIATE_TEST_SUITE_P(Texts, Instructions,
                         testing::Values(Case{"Ascii", "ascii ISO-8859-1", 1.0},
                                         Case{"Western", "western ISO-8859-1", 4.5},
                                         Case{"Koi8R", "cyrillic KOI8-R", 8.6},
                                         Case{"ShiftJis", "japanese Shift_JIS", 20}),
                         [](const auto& i) { return std::string(i.param.name); });

}  // namespace
