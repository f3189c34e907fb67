#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include "conversions.hpp"

namespace Korvane::qardatainterfaces {
namespace {

class UTF8ToLCP : public testing::TestWithParam<Conversion> {
protected:
  UTF8ToLCPTransform transform;
};
TEST_P(UTF8ToLCP, ConvertsAndReports) { expect_conversion(transform, GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Cases, UTF8ToLCP,
    testing::Values(Conversion{"empty", "KOI8-R", "", "", 0},
                    Conversion{"zero_bytes", "ISO-8859-1", {"\0\xC3\xA9\0", 4}, {"\0\xE9\0", 3}, 0},
                    Conversion{"controls", "SJIS", "\x1A\x1C\x7F\\~", "\x1A\x1C\x7F\\~", 0},
                    Conversion{"byte_order_mark_is_a_character", "ISO-8859-1", "\xEF\xBB\xBFx", "?x", 1},
                    Conversion{"invisible_characters", "KOI8-R", "a\xE2\x80\x8D\xC2\xAD", "a??", 1},
                    Conversion{"no_look_alikes", "ISO-8859-1", "\xE2\x80\x9C\xEF\xBC\xA1\xE2\x82\xAC", "???", 1},
                    Conversion{"malformed", "GB18030", "\xFF", "\x84\x31\xA4\x37", 1},
                    Conversion{"malformed_in_one_that_lacks_the_mark", "KOI8-R", "\xFF\xD0", "??", 2},
                    Conversion{"back_to_ascii", "ISO-2022-JP", "\xE3\x81\x82", "\x1B$B$\"\x1B(B", 0}),
    name_of);

TEST(UTF8ToLCPTransform, LeavesAllAsItWasWhenTheCodePageIsUnknown) {
  UTF8ToLCPTransform transform;
  for (const std::string in : {"text", ""}) expect_refusal(transform, in, 0);
  expect_refusal(transform, std::string(1000000, 'x') + "\xFF", 1);
}

TEST(UTF8ToLCPTransform, AgreesWithTheConvertersInEveryCodePage) {
  UTF8ToLCPTransform transform;
  expect_agreement(transform, "UTF-8", "");
}

TEST(UTF8ToLCPTransform, ReadsGoldenFiles) { expect_golden<UTF8ToLCPTransform>(".utf8", ".lcp"); }

TEST(UTF8ToLCPTransform, FollowsTheLocaleFromCallToCallInAllThreads) {
  UTF8ToLCPTransform transform;
  expect_thread_safety(transform, "\xC2\xB7", "\xB7", "\x9E");
}

TEST(UTF8ToLCPTransform, HasTheDefaultPolicies) {
  UTF8ToLCPTransform transform;
  EXPECT_STREQ(transform.getId(), "");
  EXPECT_TRUE(transform.allowZeroLengthInputFiles() && !transform.allowZeroLengthOutputFiles() &&
              transform.cleanup());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
