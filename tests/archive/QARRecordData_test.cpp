#include <qardatainterfaces/QARRecordData.hpp>

#include <gtest/gtest.h>

#include <utility>

namespace Korvane::qardatainterfaces {
namespace {

TEST(QARRecordData, StoresWhatItIsGivenAndHandsOutItsOwnMetadata) {
  EXPECT_TRUE(QARRecordData().isDemo());
  QARRecordData record(std::u16string(u"n\0\xD800", 3), false, std::string("\0\xFF", 2));
  EXPECT_EQ(record.getName(), std::u16string(u"n\0\xD800", 3));
  EXPECT_EQ(std::as_const(record).getMetaData().getUserData(), std::string("\0\xFF", 2));
  EXPECT_FALSE(record.getMetaData().isDemo());

  const QARRecordData copy(record);
  record.getMetaData().setDemo(true);
  record.getMetaData().setUserData("");
  record.setName(u"");
  EXPECT_TRUE(record.isDemo());
  EXPECT_EQ(record.getUserData(), "");
  EXPECT_EQ(copy.getUserData(), std::string("\0\xFF", 2));
  record = copy;
  EXPECT_EQ(record.getName(), copy.getName());
  EXPECT_FALSE(record.isDemo());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
