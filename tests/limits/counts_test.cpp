#include "support/Allocator.hpp"
#include "support/HostileStream.hpp"
#include "support/Pipe.hpp"
#include "support/TemporaryDirectory.hpp"

#include "TemporaryFile.hpp"
#include "corpora.hpp"
#include "measures.hpp"

#include <gmock/gmock.h>
#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>
#include <vector>

#include <sys/syscall.h>

namespace Korvane::qardatainterfaces {
namespace {

using namespace benchmarks;
using testing::ElementsAre;

template <class Task>
Allocator::Counts of(Task task) {
  const auto before = Allocator::so_far();
  task();
  const auto after = Allocator::so_far();
  return {after.calls - before.calls, after.bytes - before.bytes, 0, 0, after.live_bytes - before.live_bytes};
}

// Counts the second run of `task`, since the first one also initialises caches.
template <class Task>
void expect_bytes(std::size_t least, std::size_t most, Task task) {
  task();
  const auto spent = of(task);
  EXPECT_LE(spent.bytes, most);
  EXPECT_GE(spent.bytes, least) << "nothing was counted";
}

TEST(Allocations, AWholeReadTakesWhatTheContentTakes) {
  QARFileReaderFactory factory;
  for (const std::size_t size : {std::size_t{0}, 4 * KiB, MiB, 40 * MiB}) {
    const TemporaryFile file(std::string(size, 'x'));
    expect_bytes(size, size + size / 100 + 64 * KiB,
                 [&] { EXPECT_EQ(factory.getReader(file.path())->readAll().size(), size); });
  }
}

TEST(Allocations, ChunksTakeOneBuffer) {
  const TemporaryFile file(std::string(MiB, 'x'));
  const auto reader = QARFileReaderFactory().getReader(file.path());
  std::array<char, 256> chunk;
  const auto spent = of([&] {
    while (reader->more()) ASSERT_NE(reader->read(chunk.data(), chunk.size()), QARFileReader::failed);
  });
  EXPECT_EQ(spent.calls, 1U);
  EXPECT_LE(spent.bytes, 64 * KiB + 64);
}

// A reader keeps the content if the content was made as a whole, and no intermediate storage.
TEST(Allocations, AReaderKeepsWhatItDeliversAndNothingElse) {
  const std::string content(MiB, 'x');
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t"}, new QARCodePageTransform("", "UTF-8", "UTF-8"));
  std::vector<char> buffer(MiB);
  for (const std::string source : {"file", "pipe", "stream", "stalling stream"})
    for (const std::string extension : {"", ".t"})
      for (const bool whole : {false, true})
        for (int round = 0; round < 2; ++round) {  // the first round also initialises caches
          SCOPED_TRACE(source + extension + (whole ? ", whole" : ", by chunks"));
          const bool stalls = source == "stalling stream";
          HostileStream stream(content, {~0UL, stalls ? 100 : 0});
          const Pipe pipe(content);
          const TemporaryDirectory directory;
          const auto path = directory.file("file" + extension, content);
          const auto link = directory.link("pipe" + extension, pipe.native());
          std::unique_ptr<QARFileReader> reader;
          const auto spent = of([&] {
            if (source == "file")
              reader = factory.getReader(path);
            else if (source == "pipe")
              reader = factory.getRuntimeReader(link);
            else
              reader = factory.getReader(path, stream);
            QARMetaData meta;
            if (whole) reader->readAll(meta);
            while (!whole && reader->read(buffer.data(), MiB) == MiB && reader->more()) continue;
          });
          const bool kept = !stalls && (whole || !extension.empty());
          const std::size_t ahead = source == "file" && extension.empty() && !whole ? 64 * KiB : 0;
          if (round > 0) {
            EXPECT_LE(spent.live_bytes, static_cast<long>((kept ? MiB : 0) + ahead + 12 * KiB));
          }
        }
}

TEST(Allocations, ATransformTakesItsOutputAndATenthOfItsInput) {
  for (const auto& [script, encoding] :
       {std::pair{"ascii", "UTF-8"}, std::pair{"western", "ISO-8859-1"}, std::pair{"cyrillic", "KOI8-R"},
        std::pair{"japanese", "Shift_JIS"}, std::pair{"chinese", "GB18030"}, std::pair{"emoji", "UTF-8"}}) {
    SCOPED_TRACE(encoding);
    ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(std::string("en.") + encoding));
    QARMetaData meta;
    const QARByteArray in(corpus(script, encoding, 4 * MiB));
    QARByteArray utf8, back;
    LCPToUTF8Transform().transform(in, utf8, meta);
    expect_bytes(utf8.size(), utf8.size() + in.size() / 10, [&] {
      QARByteArray out;
      LCPToUTF8Transform().transform(in, out, meta);
    });
    expect_bytes(in.size(), in.size() + utf8.size() / 10, [&] {
      back = QARByteArray();
      UTF8ToLCPTransform().transform(utf8, back, meta);
    });
    EXPECT_TRUE(back == in);
  }
}

TEST(Allocations, CharactersAndLossesTakeLimitedMemory) {
  const auto spent = [](const char* from, const char* to, const std::string& text) {
    return of([&] {
      QARByteArray out;
      QARMetaData meta;
      QARCodePageTransform("", from, to).transform(QARByteArray(text), out, meta);
    });
  };
  std::string lossy = corpus("japanese", "UTF-8", 128 * KiB), long_codes, sequences;
  for (int i = 0; i < 126 * 126; ++i) {
    lossy += "€";
    long_codes += "😀";
    sequences += {static_cast<char>(0x81 + i / 126), '0', static_cast<char>(0x81 + i % 126), '0'};
  }
  EXPECT_LE(spent("UTF-8", "KOI8-U", corpus("cyrillic", "UTF-8", 64 * KiB)).live_bytes, 256L << 10);
  EXPECT_LE(spent("UTF-8", "ISO-2022-JP", lossy).bytes, 1UL << 20);
  EXPECT_LE(spent("UTF-8", "GB18030", long_codes).live_bytes, 96L << 10);
  EXPECT_LE(spent("GB18030", "UTF-8", sequences).live_bytes, 12L << 20);
}

// Which system call queries the status of a file depends on the versions of Boost and of the C library.
std::vector<long> calls_by_purpose(const std::function<void()>& task) {
  auto calls = system_calls_of(task);
  for (auto& call : calls)
    for (const auto number : {SYS_stat, SYS_lstat, SYS_fstat, SYS_newfstatat})
      if (call == number) call = SYS_statx;
  return calls;
}

TEST(SystemCalls, ReadASmallFileWithTheFewestCalls) {
  const TemporaryFile file(std::string(4 * KiB, 'x'));
  QARFileReaderFactory factory;
  EXPECT_THAT(calls_by_purpose([&] { factory.getReader(file.path())->readAll(); }),
              ElementsAre(SYS_statx, SYS_openat, SYS_statx, SYS_pread64, SYS_close));
  EXPECT_THAT(calls_by_purpose([&] { factory.getRuntimeReader(file.path())->readAll(); }),
              ElementsAre(SYS_openat, SYS_statx, SYS_pread64, SYS_close));
}

TEST(SystemCalls, ReadAtLeast64KibibytesAtATime) {
  const TemporaryFile file(std::string(MiB + 5, 'x'));
  QARFileReaderFactory factory;
  std::vector<char> buffer(4 * MiB);
  for (const auto& [chunk, expected] : {std::pair{16U, 18}, std::pair{4096U, 18}, std::pair{65535U, 18},
                                        std::pair{65536U, 18}, std::pair{262144U, 6}, std::pair{4U << 20, 2}}) {
    SCOPED_TRACE(chunk);
    const auto calls = system_calls_of([&, chunk = chunk] {
      const auto reader = factory.getRuntimeReader(file.path());
      while (reader->more()) reader->read(buffer.data(), chunk);
    });
    EXPECT_LE(std::count(calls.begin(), calls.end(), SYS_read), expected);
    EXPECT_GE(std::count(calls.begin(), calls.end(), SYS_read), 2);
    EXPECT_LE(calls.size(), static_cast<std::size_t>(expected) + 3) << "open, fstat and close, and nothing else";
  }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
