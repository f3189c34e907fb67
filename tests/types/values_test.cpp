#include "support/content.hpp"

#include <gtest/gtest.h>
#include <qardatainterfaces/Version.hpp>

#include <utility>

namespace Korvane::qardatainterfaces {
namespace {

std::string read(QARByteArray& array, unsigned long count) {
  std::string chunk(count, '\0');
  chunk.resize(array.read(reinterpret_cast<unsigned char*>(chunk.data()), count));
  return chunk;
}

TEST(QARByteArray, HavingNoStorageDiffersFromHavingStorageOfZeroBytes) {
  const QARByteArray none;
  EXPECT_TRUE(none.begin() == nullptr && none.end() == nullptr && none == QARByteArray());
  QARByteArray assigned;
  assigned = none;
  for (const auto& empty : {QARByteArray(nullptr, 0), QARByteArray(std::string()), QARByteArray(none), assigned}) {
    EXPECT_TRUE(empty.begin() != nullptr && empty.size() == 0);
    EXPECT_TRUE(empty == QARByteArray(std::string()) && !(empty == none));
  }
}

TEST(QARByteArray, ReadsForwardAndCopiesFromTheStart) {
  QARByteArray array(std::string("0123456789")), other(std::string("01234\0"
                                                                   "6789",
                                                                   10));
  EXPECT_FALSE(array == other || array == QARByteArray(std::string("01234")));
  for (const auto& [count, expected] : {std::pair(4UL, "0123"), {0UL, ""}, {4UL, "4567"}})
    EXPECT_EQ(read(array, count), expected);
  QARByteArray copy(array);
  EXPECT_TRUE(array == copy) << "positions play no part";
  EXPECT_EQ(read(copy, 99), "0123456789");
  array = *&array;
  EXPECT_EQ(read(array, 4), "89") << "assigning to itself leaves the position";
  EXPECT_EQ(read(array, 4), "");
  array = other;
  EXPECT_TRUE(array == other && array.begin() != other.begin());
  EXPECT_EQ(read(array, 99), text(other));
}

TEST(Version, IsThatOfTheHeaders) {
  const auto headers = std::to_string(ZRQAR_VERSION_MAJOR) + "." + std::to_string(ZRQAR_VERSION_MINOR) + "." +
                       std::to_string(ZRQAR_VERSION_PATCH) + ".";
  EXPECT_EQ(std::string(libzrqardatainterfaces_version).substr(0, headers.size()), headers);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
