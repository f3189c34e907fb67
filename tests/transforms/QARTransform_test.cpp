#include <qardatainterfaces/QARTransform.hpp>

#include "support/content.hpp"

#include <gtest/gtest.h>

namespace Korvane::qardatainterfaces {
namespace {

struct Defaults final : QARTransform {
  bool cleanup() override { return true; }
  bool transform(const QARByteArray&, QARByteArray&, QARMetaData&) override { return false; }
};

TEST(QARTransform, AllowsEmptyInputOnlyAndCopiesUnlessToldOtherwise) {
  Defaults defaults;
  EXPECT_TRUE(defaults.allowZeroLengthInputFiles());
  EXPECT_FALSE(defaults.allowZeroLengthOutputFiles() || defaults.isSetup());
  EXPECT_STREQ(defaults.getId(), "");
  QARByteArray in(std::string("abc")), out;
  unsigned char byte = 0;
  in.read(&byte, 1);
  EXPECT_TRUE(defaults.filter(in, out) && defaults.filter(in, in));
  EXPECT_EQ(text(out), "abc");
  EXPECT_EQ((out.read(&byte, 1), byte), 'a');
  EXPECT_EQ((in.read(&byte, 1), byte), 'b') << "filtering into itself changes nothing";
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
