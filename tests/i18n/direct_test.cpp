// The ways around UTF-16 go by blocks; every fragment has to be taken alike wherever it stands in one.

#include <ku/i18n/codecvt.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ku::i18n {
namespace {

struct Case {
  const char* source;
  const char* target;
  std::vector<std::string> fillings;  // in the source
};

/// Both stages through UTF-16, or nothing if one of them refuses the text.
class Judge {
public:
  explicit Judge(const Case& c) : source_(c.source, false), target_(c.target, false) {}

  bool converts(const std::string& text, std::string& result) try {
    const auto units = source_.convert(text.data(), text.size());
    result = target_.convert(units.data(), units.size());
    return true;
  } catch (const CvtInvalidCharacter&) {
    return false;
  }

private:
  codecvt_string_to_ustring source_;
  codecvt_ustring_to_string target_;
};

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (; times > 0; --times) result += text;
  return result;
}

void expect_taken_up_to_the_first_offence(const Case& c, Judge& judge, const std::string& filling, std::size_t before,
                                          const std::string& fragment) {
  const std::string start = repeated(filling, before);
  const std::string text = start + fragment + repeated(filling, 140 / filling.size());
  std::string expected;
  std::size_t taken = text.size();
  if (!judge.converts(text, expected)) {
    // Only in UTF-8 the text behind an offence does not depend on it.
    if (c.source == std::string("UTF-8")) taken = start.size() + fragment.size();
    while (!judge.converts(text.substr(0, taken), expected)) --taken;
  }
  const codecvt_string_to_ustring source(c.source, false);
  const codecvt_ustring_to_string target(c.target, false);
  const std::vector<char> bytes(text.begin(), text.end());  // with ends that a sanitizer sees
  std::vector<char> placed(4 * text.size());
  const auto step = convert_directly(source, target, bytes.data(), bytes.size(), placed.data(), placed.size());
  ASSERT_EQ(step.taken, taken) << c.target << ", " << filling << " x " << before << testing::PrintToString(fragment);
  ASSERT_EQ(std::string(placed.data(), step.placed), expected) << c.target << ", " << filling << " x " << before;
  ASSERT_EQ(step.done, taken == text.size());
  placed = std::vector<char>(expected.size() / 2);
  const auto part = convert_directly(source, target, bytes.data(), bytes.size(), placed.data(), placed.size());
  ASSERT_EQ(std::string(placed.data(), part.placed), expected.substr(0, part.placed));
}

const Case cases[] = {{"KOI8-R", "UTF-8", {"a", "\xC1"}},
                      {"windows-1252", "UTF-8", {"a", "\x80", "aa\xE9"}},
                      {"ISO-8859-7", "UTF-8", {"a", "\xE1"}},
                      {"IBM037", "UTF-8", {"\x81"}},
                      {"Shift_JIS", "UTF-8", {"a", "\xB1", "\x93\xFA"}},
                      {"UTF-8", "UTF-8", {"a", "я", "日", "😀"}},
                      {"UTF-8", "KOI8-R", {"я", "aя", std::string(30, 'a') + "─"}},
                      {"UTF-8", "ISO-8859-1", {"é", "aaé"}},
                      {"UTF-8", "IBM037", {"a", "é"}},
                      {"UTF-8", "Shift_JIS", {"я", "日"}},
                      {"UTF-8", "EUC-JP", {"日", "日a本я"}}};

TEST(Directly, TakesAllUpToTheFirstOffenceAnywhere) {
  std::vector<std::string> fragments;
  for (int byte = 0; byte < 0x100; ++byte) fragments.emplace_back(1, static_cast<char>(byte));
  for (int first = 0xC0; first <= 0xFF; ++first)
    for (const int second : {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF})
      for (const char* rest : {"", "\x80", "\x80\x80"})
        fragments.push_back(std::string{static_cast<char>(first), static_cast<char>(second)} + rest);
  for (const auto& c : cases) {
    Judge judge(c);
    for (const auto& filling : c.fillings)
      for (const auto& fragment : fragments)
        for (std::size_t before = 0; before <= 70 / filling.size(); before += fragment.size()) {
          if (fragment.size() > 1 && c.source != std::string("UTF-8")) break;
          if (before * filling.size() % 16 > 2 && before * filling.size() % 16 < 12) continue;  // no block ends there
          expect_taken_up_to_the_first_offence(c, judge, filling, before, fragment);
          if (HasFatalFailure()) return;
        }
  }
}

TEST(Directly, TakesNothingAmidACharacterOrWithoutRoomOrUtf8) {
  char placed[9];
  char16_t units[9];
  for (const char* const target : {"KOI8-R", "UTF-8"}) {
    codecvt_string_to_ustring source("UTF-8", false), page("ISO-8859-1", false);
    codecvt_ustring_to_string into(target, false);
    EXPECT_EQ(convert_directly(page, into, "text", 4, placed, 9).taken, target[0] == 'U' ? 4U : 0U);
    EXPECT_EQ(convert_directly(page, into, "a", 1, placed, 3).taken, 0U);
    EXPECT_EQ(convert_directly(source, into, "a", 1, placed, 9).taken, 1U);
    into.convert_some(u"\xD83D", 1, false, placed, 9);
    EXPECT_EQ(convert_directly(source, into, "a", 1, placed, 9).taken, 0U);
    source.convert_some("\xE3", 1, false, units, 9);
    EXPECT_EQ(convert_directly(source, codecvt_ustring_to_string(target, false), "a", 1, placed, 9).taken, 0U);
  }
}

}  // namespace
}  // namespace ku::i18n
