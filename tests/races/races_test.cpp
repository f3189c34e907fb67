// Concurrent changes of a path or of the process.

#include "support/Reporting.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Watchdog.hpp"
#include "support/transformed.hpp"

#include <CodePageSurvey.hpp>
#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>
#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARData.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <atomic>
#include <clocale>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace Korvane::qardatainterfaces {
namespace {

using rtxi18nutil::DeployedException;

std::size_t swaps = 20000;  // default; the program's argument replaces it

TEST(Races, NeverReadTheTargetOfALink) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  directory.file("secret", "what the link leads to");
  directory.file("file", "content");
  directory.link("link", "secret");
  ASSERT_EQ(::mkfifo(directory.native("fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkdir(directory.native("directory").c_str(), 0700), 0);
  const auto path = directory.file("name", "content");

  std::atomic<bool> done = false;
  std::thread swapper([&] {
    const char* const others[] = {"file", "link", "fifo", "directory"};
    for (std::size_t i = 0; i < swaps; ++i) {
      const auto other = directory.native(others[i % 4]);
      if (i % 7 == 0) std::this_thread::yield();
      EXPECT_EQ(::renameat2(AT_FDCWD, other.c_str(), AT_FDCWD, directory.native("name").c_str(), RENAME_EXCHANGE), 0);
    }
    done = true;
  });
  std::map<std::string, int> outcomes;
  while (!done) {
    const Watchdog watchdog(20, "a reader, perhaps on the FIFO, which has no writer");
    try {
      const auto reader = factory.getReader(path);
      // Another file may replace the link between the two system calls of its reader, which then delivers no content.
      const bool plain = reader->more();
      const auto whole = text(reader->readAll());
      const bool is_target = whole == "secret" || whole.empty();
      ++outcomes[(plain ? "content " : "link ") + (is_target ? "target" : whole)];
    } catch (const DeployedException& e) {
      ++outcomes[e.identifier()];
    }
  }
  swapper.join();
  for (const auto& [outcome, count] : outcomes) {
    std::printf("%8d times %s\n", count, outcome.c_str());
    EXPECT_TRUE(outcome == "content content" || outcome == "link target" ||
                outcome == "QARDATAINTERFACES_FILE_OPEN_FAILED" ||
                outcome == "QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED");
  }
  EXPECT_GE(outcomes.size(), 3U) << "too few replacements were seen";
}

// Runs `task` in many threads at once, including its first call, while the locale of the process changes.
template <class Task>
void together(Task task) {
  std::atomic<bool> go = false, done = false;
  std::vector<std::thread> threads;
  for (int i = 0; i < 16; ++i)
    threads.emplace_back([&, i] {
      while (!go) std::this_thread::yield();
      for (int round = 0; round < 20; ++round) task(i);
    });
  std::thread setter([&] {
    using ku::i18n::ZrLocale;
    const ZrLocale locales[] = {ZrLocale("de_DE.UTF-8"), ZrLocale("ja_JP.UTF-8")};
    for (std::size_t i = 0; !done; ++i) {
      ZrLocale::global(locales[i % 2]);
      std::setlocale(LC_ALL, i % 2 == 0 ? "C" : "C.UTF-8");
    }
  });
  go = true;
  for (auto& thread : threads) thread.join();
  done = true;
  setter.join();
}

TEST(Threads, ShareAFactoryAndItsTransforms) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t"}, new UTF8ToLCPTransform);
  factory.addFileTypeHandler({u".u"}, new LCPToUTF8Transform);
  const std::string content = "plain, and \xC3\xA4\xE3\x81\x82\n";
  const std::u16string paths[] = {directory.file("a.t", content), directory.file("b.u", content),
                                  directory.file("c", content), directory.path("missing")};
  together([&](int i) {
    const auto& path = paths[i % 4];
    EXPECT_EQ(factory.willBeTransformed(path), i % 4 < 2);
    try {
      EXPECT_EQ(text(factory.getReader(path)->readAll()), content);
    } catch (const DeployedException& e) {
      EXPECT_EQ(e.identifier(), "QARDATAINTERFACES_FILE_NOT_EXIST");
      EXPECT_NE(std::string(e.what()).find("missing"), std::string::npos);
    }
  });
}

TEST(Threads, ShareATransform) {
  LCPToUTF8Transform decoding;
  UTF8ToLCPTransform encoding;
  Reporting reporting("UTF-8", "US-ASCII");
  const std::string ascii = pattern(0x80);
  const std::pair<std::string, std::string> lacking[] = {
      {"é", "?0 1: 0+2=U+00E9"}, {"日", "?0 1: 0+3=U+65E5"}, {"😀", "?0 1: 0+4=U+1F600"}};
  together([&](int i) {
    for (QARTransform* const transform : std::initializer_list<QARTransform*>{&decoding, &encoding, &reporting})
      EXPECT_EQ(transformed(*transform, ascii), ascii);
    const auto& [in, expected] = lacking[i % 3];
    QARByteArray out;
    QARMetaData meta(false, "");
    reporting.transform(QARByteArray(in), out, meta);
    EXPECT_EQ(text(out) + meta.getUserData(), expected);
  });
}

TEST(Threads, UseDifferentCodePages) {
  const struct {
    const char *page, *bytes, *text;
  } cases[] = {{"ISO-8859-1", "\xE9", "é"},
               {"KOI8-R", "\xD1", "я"},
               {"Shift_JIS", "\x93\xFA", "日"},
               {"GB18030", "\xC8\xD5", "日"}};
  together([&](int i) {
    const auto& [page, in, expected] = cases[i % 4];
    QARCodePageTransform own("", page, "UTF-8");
    EXPECT_EQ(transformed(own, in), expected);
    EXPECT_EQ(ku::i18n::codecvt_string_to_ustring(page, true).convert("@", 1), u"@");
    EXPECT_EQ(ku::i18n::to_string(u"\u00E4"), ku::i18n::to_string(u"\u00E4"));
  });
}

// Each code page has its own tables, which are filled during conversions. All threads need the same entries at the
// same time, and every round has new tables.
TEST(Threads, FillTheTablesOfEachCodePage) {
  std::u16string units = u"\U00010000\U00020000";
  for (unsigned unit = 1; unit < 0xD800; unit += 11) units += static_cast<char16_t>(unit);
  const auto utf8 = ku::i18n::codecvt_ustring_to_string("UTF-8", false).convert(units.data(), units.size());
  for (const auto& page : code_page_names()) {
    const auto bytes = ku::i18n::codecvt_ustring_to_string(page, true).convert(units.data(), units.size());
    const auto back = ku::i18n::codecvt_string_to_ustring(page, true).convert(bytes.data(), bytes.size());
    const auto expected = ku::i18n::codecvt_ustring_to_string("UTF-8", true).convert(back.data(), back.size());
    std::atomic<int> ready = 0, wrong = 0;
    std::vector<std::thread> threads;
    constexpr int count = 4;
    for (int i = 0; i < count; ++i)
      threads.emplace_back([&] {
        QARCodePageTransform encoding("", "UTF-8", page), decoding("", page, "UTF-8");
        const QARByteArray in(utf8);
        QARByteArray encoded, decoded;
        QARMetaData meta;
        for (++ready; ready < count;) std::this_thread::yield();
        encoding.transform(in, encoded, meta);
        decoding.transform(encoded, decoded, meta);
        wrong += text(encoded) != bytes || text(decoded) != expected;
      });
    for (auto& thread : threads) thread.join();
    ASSERT_EQ(wrong, 0) << page;
  }
}

TEST(Threads, ShareIdsAndLocales) {
  const qar::qardatainterfaces::QARDATAINTERFACES_FILE_NOT_EXIST id("path");
  const ku::i18n::ZrLocale locales[] = {ku::i18n::ZrLocale("C"), ku::i18n::ZrLocale("es"), ku::i18n::ZrLocale("zh")};
  together([&](int i) {
    const auto text = ku::i18n::MessageCatalog::get_message(id, locales[i % 3]);
    EXPECT_NE(text.find(u"path"), text.npos);
    EXPECT_NE(std::string(DeployedException(id).what()).find("path"), std::string::npos);
    EXPECT_EQ(ku::i18n::ZrLocale::global().encoding(), "UTF-8");
  });
}

TEST(Threads, ShareConstantObjectsAndUseTheirOwn) {
  const QARByteArray bytes(std::string("bytes"));
  const QARMetaData meta(false, "user data");
  const QARRecordData record(u"name", true, "user data");
  const DeployedException error((qar::qardatainterfaces::QARDATAINTERFACES_FILE_NOT_EXIST("path")));
  const ku::i18n::CvtInvalidCharacter invalid;
  const ku::i18n::codecvt_ascii_to_ustring widener;
  together([&](int) {
    EXPECT_TRUE(QARByteArray(bytes) == bytes);
    EXPECT_EQ(QARMetaData(meta).getUserData(), "user data");
    EXPECT_EQ(QARRecordData(record).getName(), u"name");
    EXPECT_STREQ(DeployedException(error).what(), error.what());
    EXPECT_STREQ(ku::i18n::CvtInvalidCharacter(invalid).what(), invalid.what());
    EXPECT_EQ(widener.convert("path", 4), u"path");
    QARContext context;
    context.setTarvoKey(bytes);
    EXPECT_TRUE(QARContext(context).getTarvoKey() == bytes);
    QARData data;
    data.addFileMapEntry(u"entry", u"name", true);
    EXPECT_TRUE(QARData(data).existEntry(u"entry"));
    QARFileReaderFactory factory;
    factory.addFileTypeHandler({u".t"}, new LCPToUTF8Transform);
    EXPECT_TRUE(factory.willBeTransformed(u"x.t"));
  });
}

}  // namespace
}  // namespace Korvane::qardatainterfaces

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (count > 1) Korvane::qardatainterfaces::swaps = std::stoul(arguments[1]);
  return RUN_ALL_TESTS();
}
