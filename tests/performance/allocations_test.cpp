#include "allocations.hpp"

#include "TemporaryFile.hpp"
#include "corpora.hpp"

#include <gtest/gtest.h>
#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <array>
#include <utility>

namespace Korvane::qardatainterfaces {
namespace {

using namespace benchmarks;

/// Of the second time that `task` runs: what is kept from the first is not a matter of each operation.
template <class Task>
Allocations of(Task task) {
  task();
  const auto before = Allocations::so_far();
  task();
  const auto after = Allocations::so_far();
  return {after.count - before.count, after.bytes - before.bytes};
}

TEST(Allocations, AWholeReadTakesWhatTheContentTakes) {
  QARFileReaderFactory factory;
  for (const std::size_t size : {std::size_t{0}, 4 * KiB, MiB, 40 * MiB}) {
    const TemporaryFile file(std::string(size, 'x'));
    const auto spent = of([&] { EXPECT_EQ(factory.getReader(file.path())->readAll().size(), size); });
    EXPECT_LE(spent.bytes, size + size / 100 + 64 * KiB);
    EXPECT_GE(spent.bytes, size) << "nothing was counted";
  }
}

TEST(Allocations, ChunksTakeOneBuffer) {
  const TemporaryFile file(std::string(MiB, 'x'));
  const auto reader = QARFileReaderFactory().getReader(file.path());
  std::array<char, 256> chunk;
  const auto before = Allocations::so_far();
  while (reader->more()) ASSERT_NE(reader->read(chunk.data(), chunk.size()), QARFileReader::failed);
  const auto after = Allocations::so_far();
  EXPECT_EQ(after.count - before.count, 1U);
  EXPECT_LE(after.bytes - before.bytes, 64 * KiB + 64);
}

void expect_little(QARTransform&& transform, const QARByteArray& in, QARByteArray& out) {
  QARMetaData meta;
  const auto spent = of([&] {
    out = QARByteArray();
    EXPECT_TRUE(transform.transform(in, out, meta));
  });
  EXPECT_LE(spent.bytes, out.size() + in.size() / 10);
  EXPECT_GE(spent.bytes, out.size()) << "nothing was counted";
}

TEST(Allocations, ATransformTakesItsOutputAndATenthOfItsInput) {
  for (const auto& [script, encoding] :
       {std::pair{"ascii", "UTF-8"}, std::pair{"western", "ISO-8859-1"}, std::pair{"cyrillic", "KOI8-R"},
        std::pair{"japanese", "Shift_JIS"}, std::pair{"chinese", "GB18030"}, std::pair{"emoji", "UTF-8"}}) {
    SCOPED_TRACE(encoding);
    ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(std::string("en.") + encoding));
    const QARByteArray in(corpus(script, encoding, 4 * MiB));
    QARByteArray utf8, back;
    expect_little(LCPToUTF8Transform(), in, utf8);
    expect_little(UTF8ToLCPTransform(), utf8, back);
    EXPECT_TRUE(back == in);
  }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
