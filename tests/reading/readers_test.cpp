// What a transcript cannot say.

#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <random>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

class FileReaders : public testing::Test {
protected:
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
};

TEST_F(FileReaders, MixChunksAndWholeReadsAtRandom) {
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

#ifndef __SANITIZE_THREAD__  // which shadows each of the 4 GiB
TEST_F(FileReaders, CountBeyond32BitsAndNeverAsFarAsTheFailureValue) {
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

TEST_F(FileReaders, HoldTheirFilesOpenForThemselvesOnly) {
  const int next = ::dup(0);  // what opening will give once more
  ::close(next);
  auto reader = factory.getReader(directory.file("file", ""));
  EXPECT_EQ(::fcntl(next, F_GETFD), FD_CLOEXEC);
  reader.reset();
  EXPECT_EQ(::fcntl(next, F_GETFD), -1);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
