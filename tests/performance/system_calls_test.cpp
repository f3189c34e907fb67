#include "TemporaryFile.hpp"
#include "corpora.hpp"
#include "measures.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include <sys/syscall.h>

namespace Korvane::qardatainterfaces {
namespace {

using namespace benchmarks;
using testing::ElementsAre;

TEST(SystemCalls, ASmallFileIsReadWithThoseThatItNeeds) {
  const TemporaryFile file(std::string(4 * KiB, 'x'));
  QARFileReaderFactory factory;
  EXPECT_THAT(system_calls_of([&] { factory.getReader(file.path())->readAll(); }),
              ElementsAre(SYS_newfstatat, SYS_openat, SYS_newfstatat, SYS_pread64, SYS_close));
  EXPECT_THAT(system_calls_of([&] { factory.getRuntimeReader(file.path())->readAll(); }),
              ElementsAre(SYS_openat, SYS_newfstatat, SYS_pread64, SYS_close));
}

TEST(SystemCalls, ChunksAreReadBy64KibibytesAtLeast) {
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
