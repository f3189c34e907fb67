#include <gtest/gtest.h>
#include <qardatainterfaces/QARMetaData.hpp>

namespace Korvane::qardatainterfaces {
namespace {

TEST(QARMetaData, IsADemoWithoutUserDataUnlessToldOtherwise) {
  QARMetaData meta;
  EXPECT_TRUE(meta.isDemo());
  EXPECT_EQ(meta.getUserData(), "");
  meta = QARMetaData(false, std::string("a\0\xFF", 3));
  EXPECT_FALSE(meta.isDemo());
  EXPECT_EQ(meta.getUserData(), std::string("a\0\xFF", 3));
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
