#include <qardatainterfaces/LCPToUTF8Transform.hpp>

#include "conversions.hpp"

namespace Korvane::qardatainterfaces {
namespace {

class LCPToUTF8 : public testing::TestWithParam<Conversion> {
protected:
  LCPToUTF8Transform transform;
};
TEST_P(LCPToUTF8, ConvertsAndReports) { expect_conversion(transform, GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Cases, LCPToUTF8,
    testing::Values(Conversion{"empty", "KOI8-R", "", "", 0},
                    Conversion{"zero_bytes", "ISO-8859-1", {"\0\xE9\0", 3}, {"\0\xC3\xA9\0", 4}, 0},
                    Conversion{"controls", "SJIS", "\x1A\x1C\x7F\\~", "\x1A\x1C\x7F\\~", 0},
                    Conversion{"byte_order_mark", "UTF-8", "\xEF\xBB\xBF", "\xEF\xBB\xBF", 0},
                    Conversion{"cut_off", "SJIS", "a\x82", "a\xEF\xBF\xBD", 1},
                    Conversion{"malformed_twice_one_line", "UTF-8", "\xFF \xC0", "\xEF\xBF\xBD \xEF\xBF\xBD", 1},
                    Conversion{"not_assigned", "windows-1253", "\xD2!", "\xEF\xBF\xBD!", 1},
                    // UTF-7 carries lone surrogates, which UTF-8 does not.
                    Conversion{"second_stage", "UTF-7", "+2AA-", "\xEF\xBF\xBD", 1},
                    Conversion{"both_stages", "UTF-7", "+2AA-\xFF", "\xEF\xBF\xBD\xEF\xBF\xBD", 2}),
    name_of);

TEST(LCPToUTF8Transform, LeavesAllAsItWasWhenTheCodePageIsUnknown) {
  LCPToUTF8Transform transform;
  for (const std::string in : {"text", ""}) expect_refusal(transform, in, 0);
}

TEST(LCPToUTF8Transform, FindsWhatIsMalformedWhereverItStands) {
  LCPToUTF8Transform transform;
  const std::string good = "\xE3\x81\x82 \xC3\xA9";
  for (const std::size_t before :
       std::initializer_list<std::size_t>{0, 1, 15, 16, 17, 63, 64, 65, 16381, 16382, 16383, 16384, 16385, 40000}) {
    const auto plain = std::string(before, 'x');
    expect_conversion(transform, {"", "UTF-8", plain + good, plain + good, 0});
    expect_conversion(transform,
                      {"", "UTF-8", plain + "\xE3\x81" + good + plain, plain + "\xEF\xBF\xBD" + good + plain, 1});
  }
}

TEST(LCPToUTF8Transform, AgreesWithTheConvertersInEveryCodePage) {
  LCPToUTF8Transform transform;
  expect_agreement(transform, "", "UTF-8");
}

TEST(LCPToUTF8Transform, ReadsGoldenFiles) { expect_golden<LCPToUTF8Transform>(".lcp", ".utf8"); }

TEST(LCPToUTF8Transform, FollowsTheLocaleFromCallToCallInAllThreads) {
  LCPToUTF8Transform transform;
  expect_thread_safety(transform, "\xC1", "\xC3\x81", "\xD0\xB0");
}

TEST(LCPToUTF8Transform, HasTheDefaultPolicies) {
  LCPToUTF8Transform transform;
  EXPECT_STREQ(transform.getId(), "");
  EXPECT_TRUE(transform.allowZeroLengthInputFiles() && !transform.allowZeroLengthOutputFiles() &&
              transform.cleanup());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
