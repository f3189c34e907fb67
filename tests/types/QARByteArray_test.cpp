#include <qardatainterfaces/QARByteArray.hpp>

#include <gtest/gtest.h>

#include <string>

namespace Korvane::qardatainterfaces {
namespace {

std::string text(const QARByteArray& array) { return {array.begin(), array.end()}; }

std::string read(QARByteArray& array, unsigned long count) {
  std::string chunk(count, '\0');
  chunk.resize(array.read(reinterpret_cast<unsigned char*>(chunk.data()), count));
  return chunk;
}

TEST(QARByteArray, HavingNoStorageDiffersFromHavingStorageOfZeroBytes) {
  const QARByteArray none;
  EXPECT_EQ(none.begin(), nullptr);
  EXPECT_EQ(none.end(), none.begin());
  EXPECT_TRUE(none == QARByteArray());

  QARByteArray assigned;
  assigned = none;
  for (const QARByteArray& empty :
       {QARByteArray(nullptr, 0), QARByteArray(std::string()), QARByteArray(none), assigned}) {
    EXPECT_EQ(empty.size(), 0U);
    EXPECT_NE(empty.begin(), nullptr);
    EXPECT_FALSE(empty == none);
    EXPECT_TRUE(empty == QARByteArray(std::string()));
  }
}

TEST(QARByteArray, ReadsForwardToTheEnd) {
  QARByteArray array(std::string("0123456789"));
  EXPECT_EQ(read(array, 4), "0123");
  EXPECT_EQ(read(array, 0), "");
  QARByteArray copy(array);
  EXPECT_EQ(read(array, 4), "4567");
  EXPECT_EQ(read(array, 4), "89");
  EXPECT_EQ(read(array, 4), "");
  EXPECT_EQ(read(copy, 99), "0123456789");
  EXPECT_TRUE(array == copy) << "positions play no part";
}

TEST(QARByteArray, AssignmentCopiesAndRewinds) {
  QARByteArray array(std::string("abc", 3));
  QARByteArray other(std::string("a\0c", 3));
  EXPECT_FALSE(array == other);
  read(array, 2);
  array = *&array;
  EXPECT_EQ(read(array, 9), "c") << "assigning to itself leaves the position";
  array = other;
  EXPECT_TRUE(array == other);
  EXPECT_NE(array.begin(), other.begin());
  EXPECT_EQ(read(array, 9), text(other));
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
