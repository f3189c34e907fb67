#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

namespace Korvane::qardatainterfaces {
namespace {

TEST(QARSymbolicLinkReader, DeliversTheTargetFromItsStartEachTime) {
  const TemporaryDirectory directory;
  for (const std::string& target :
       {std::string("abc"), std::string("../x"), std::string("\xFF"), std::string(4095, 't')}) {
    const auto reader = QARFileReaderFactory().getReader(directory.link("link", target));
    QARMetaData meta(false, "kept");
    for (const unsigned int size : {2U, 2U, 0U, 3U, 9999U}) {
      EXPECT_FALSE(reader->more());
      EXPECT_EQ(chunk(*reader, size), target.substr(0, size));
      EXPECT_EQ(chunk(*reader, size, meta), target.substr(0, size));
    }
    EXPECT_EQ(text(reader->readAll(meta)), target);
    EXPECT_EQ(meta.getUserData(), "kept");
    EXPECT_STREQ(reader->getTransformId(), "");
    std::filesystem::remove(directory.native("link"));
  }
}

TEST(QARSymbolicLinkReader, IsEmptyForALinkThatTellsNoLength) {
  EXPECT_EQ(text(QARFileReaderFactory().getReader(u"/proc/self/exe")->readAll()), "");
}

TEST(QARSymbolicLinkReader, KeepsTheLastTargetWhenTheLinkIsNoLongerOne) {
  const TemporaryDirectory directory;
  const auto path = directory.link("link", "first");
  const auto reader = QARFileReaderFactory().getReader(path), unread = QARFileReaderFactory().getReader(path);
  EXPECT_EQ(text(reader->readAll()), "first");
  for (const bool missing : {true, false}) {
    std::filesystem::remove(directory.native("link"));
    directory.file(missing ? "other" : "link", "");
    if (!missing) std::filesystem::resize_file(directory.native("link"), 1UL << 43);  // for which there is no room
    EXPECT_EQ(text(reader->readAll()), "first");
    EXPECT_EQ(chunk(*reader, 99), "first");
    EXPECT_EQ(text(unread->readAll()), "");
    EXPECT_TRUE(reader->readSucceeded() && unread->ready() == 0);
  }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
