#include "support/HostileStream.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <random>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

class QARFileReaderWithoutTransform : public testing::Test {
protected:
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
};

TEST_F(QARFileReaderWithoutTransform, NoticesTheEndWithTheReadThatGoesPastIt) {
  for (const std::vector<std::string>& chunks :
       std::vector<std::vector<std::string>>{{""}, {"abc"}, {"abcd", "efgh", ""}}) {
    std::string content;
    for (const auto& expected : chunks) content += expected;
    const auto reader = factory.getReader(directory.file("file", content));
    QARMetaData meta(false, "kept");
    for (const auto& expected : chunks) {
      EXPECT_EQ(chunk(*reader, 0), "");
      EXPECT_TRUE(reader->more() && reader->ready() == 0) << "nothing was asked for";
      EXPECT_EQ(chunk(*reader, 4, meta), expected);
    }
    directory.file("file", content + "later");
    EXPECT_FALSE(reader->more());
    EXPECT_EQ(reader->ready(), QARFileReader::not_good);
    EXPECT_EQ(text(reader->readAll(meta)), "") << "too late";
    EXPECT_EQ(chunk(*reader, 4), "");
    EXPECT_TRUE(reader->readSucceeded());
    EXPECT_EQ(meta.getUserData(), "kept");
    EXPECT_STREQ(reader->getTransformId(), "");
  }
}

TEST_F(QARFileReaderWithoutTransform, MixesChunksAndWholeReadsAtRandom) {
  constexpr unsigned int sizes[] = {1, 7, 4096, 65536, 65537, 200000};
  std::minstd_rand random(20);
  for (const std::size_t length : {1U, 8192U, 65535U, 65536U, 131072U, 1000003U}) {
    const auto content = pattern(length);
    const auto reader = factory.getReader(directory.file("file", content));
    std::size_t place = 0;
    std::string whole;
    while (reader->more()) {
      SCOPED_TRACE(testing::Message() << length << " at " << place);
      if (random() % 4 == 0) whole = text(reader->readAll());
      const auto size = static_cast<unsigned int>(sizes[random() % std::size(sizes)] - random() % 2);
      const auto expected = content.substr(place, size);
      ASSERT_EQ(chunk(*reader, size), expected);
      ASSERT_EQ(reader->more(), expected.size() == size);
      place += expected.size();
      ASSERT_TRUE(whole.empty() || whole == content);
    }
    EXPECT_EQ(text(reader->readAll()), whole) << "as last read";
    EXPECT_EQ(place, length);
  }
}

TEST_F(QARFileReaderWithoutTransform, DeliversWhatTheFileHasBecome) {
  const auto reader = factory.getReader(directory.file("file", "0123456789"));
  EXPECT_EQ(text(reader->readAll()), "0123456789");
  std::filesystem::resize_file(directory.native("file"), 4);
  EXPECT_EQ(text(reader->readAll()), "0123");
  EXPECT_EQ(reader->ready(), 0) << "a shorter file is still one";
  const auto grown = pattern(300000);
  directory.file("file", grown);
  EXPECT_EQ(text(reader->readAll()), grown);
  std::filesystem::remove(directory.native("file"));
  EXPECT_EQ(text(reader->readAll()), grown) << "open, if without a name";
  EXPECT_EQ(chunk(*reader, 300001), grown);
}

TEST_F(QARFileReaderWithoutTransform, ReadsFilesThatDoNotTellTheirSize) {
  for (const std::string path : {"/proc/devices", "/proc/kallsyms"}) {  // of which the second is large
    std::ifstream file(path);
    const std::string expected(std::istreambuf_iterator<char>(file), {});
    const auto reader = factory.getReader({path.begin(), path.end()});
    EXPECT_TRUE(text(reader->readAll()) == expected) << path;
    EXPECT_TRUE(text(reader->readAll()) == expected) << path;
    EXPECT_TRUE(chunk(*reader, 100000000) == expected) << path;
  }
}

TEST_F(QARFileReaderWithoutTransform, TellsWhenTheFileCannotBeRead) {
  for (const bool whole : {false, true}) {
    const auto reader = factory.getReader(u"/proc/self/mem");  // nothing is mapped at 0: EIO
    EXPECT_EQ(reader->ready(), 0);
    EXPECT_EQ(whole ? text(reader->readAll()) : chunk(*reader, 10), whole ? "" : refused);
    EXPECT_EQ(reader->ready(), QARFileReader::not_good);
    EXPECT_EQ(chunk(*reader, 10), refused);
    EXPECT_TRUE(reader->more() && reader->readSucceeded());
  }
}

#ifndef __SANITIZE_THREAD__  // which shadows each of the 4 GiB
TEST_F(QARFileReaderWithoutTransform, CountsBeyond32BitsAndNeverAsFarAsTheFailureValue) {
  constexpr std::size_t size = std::size_t{1} << 32, piece = 1 << 26;
  const int file = ::memfd_create("sparse", 0), room = ::memfd_create("room", 0);
  ASSERT_EQ(::ftruncate(file, size) + ::ftruncate(room, piece), 0);
  ASSERT_EQ(::pwrite(file, "end", 3, size), 3);
  // One piece of memory shows up all over the buffer.
  auto* const buffer = static_cast<char*>(::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  for (std::size_t at = 0; at < size; at += piece)
    ASSERT_NE(::mmap(buffer + at, piece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, room, 0), MAP_FAILED);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const auto reader = factory.getRuntimeReader({path.begin(), path.end()});
  EXPECT_EQ(reader->read(buffer, 0xFFFFFFFF), 0xFFFFFFFEU);
  EXPECT_EQ(chunk(*reader, 9), std::string(2, '\0') + "end");
  EXPECT_EQ(::munmap(buffer, size) + ::close(file) + ::close(room), 0);
}
#endif

TEST_F(QARFileReaderWithoutTransform, HoldsItsFileOpenForItselfOnly) {
  const int next = ::dup(0);  // what opening will give once more
  ::close(next);
  auto reader = factory.getReader(directory.file("file", ""));
  EXPECT_EQ(::fcntl(next, F_GETFD), FD_CLOEXEC);
  reader.reset();
  EXPECT_EQ(::fcntl(next, F_GETFD), -1);
}

TEST_F(QARFileReaderWithoutTransform, ReadsAStreamInChunksAndThenTheRest) {
  const auto content = pattern(20000);
  HostileStream stream(content, {.most = 5000, .idle = 1, .boasts = true}), nothing("");
  EXPECT_FALSE(factory.getReader(u"x", nothing)->more());
  const auto reader = factory.getReader(u"x", stream);
  EXPECT_EQ(reader->ready(), QARFileReader::not_open);
  for (const auto& expected : {std::string(), content.substr(0, 10), std::string(), content.substr(10, 10)})
    EXPECT_EQ(chunk(*reader, 10), expected);
  EXPECT_TRUE(reader->more());
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(text(reader->readAll()), content.substr(20)) << "gathering nothing changes nothing";
  EXPECT_FALSE(reader->more());
}

TEST_F(QARFileReaderWithoutTransform, LosesNothingOfAStreamThatStallsOrBreaks) {
  const auto content = pattern(20000);
  for (const int failures_before_chunks : {0, 1, 2, 4}) {
    HostileStream stream(content, {.most = 6000, .idle = 100, .throws_at = 6000});
    const auto reader = factory.getReader(u"x", stream);
    std::string got;
    for (int i = 0; i < failures_before_chunks; ++i) try {
        EXPECT_EQ(text(reader->readAll()), "");
        EXPECT_EQ(reader->lastError(), QARFileReader::transform_failed);
      } catch (const std::runtime_error&) {
      }
    for (int i = 0; i < 9999 && reader->more(); ++i) try {
        got += chunk(*reader, 700);
        EXPECT_TRUE(reader->readSucceeded());
      } catch (const std::runtime_error&) {
      }
    EXPECT_EQ(got, content) << "chunks go on where they were";
  }
  HostileStream stream(content, {.most = 6000, .idle = 100});
  const auto reader = factory.getReader(u"x", stream);
  for (int i = 0; i < 4; ++i) EXPECT_EQ((reader->readAll(), reader->lastError()), QARFileReader::transform_failed);
  EXPECT_EQ(text(reader->readAll()), content);
  EXPECT_TRUE(reader->readSucceeded());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
