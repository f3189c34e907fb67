#include <qardatainterfaces/QARPath.hpp>

#include "support/environment.hpp"
#include "support/table.hpp"

#include <ku/i18n/codecvt.hpp>

#include <random>

namespace Korvane::qardatainterfaces {
namespace {

class Names : public RowTest {};

TEST_P(Names, HaveThePathsThatPythonGivesThem) {
  in_environment({{"LC_ALL", row.at(0)}}, [this] {
    const auto name = row.at(1);
    const auto path = row.units(2);
    if (name == "(none)") {
      EXPECT_THROW(QARPath::toNative(path), ku::i18n::CvtExceptionBase);
    } else {
      EXPECT_EQ(QARPath::fromNative(name), path);
      EXPECT_EQ(QARPath::toNative(path), name);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(, Names, testing::ValuesIn(table("tests/types/names.txt")), RowTest::name);

// Different names have different paths: each name can be converted to a path and back.
TEST(QARPath, ConvertsEveryNameToAPathAndBack) {
  for (const std::string encoding :
       {"UTF-8", "ISO-8859-7", "SJIS", "EUC-JP", "GB18030", "Big5-HKSCS", "EUC-JISX0213", "CP1258", "EUC-TW",
        "ISO-2022-JP", "ISO-2022-KR", "UTF-7", "UTF-16", "UTF-32", "IBM-037", "IBM-930"})
    in_environment({{"LC_ALL", "xx." + encoding}}, [&] {
      std::size_t wrong = 0;
      const auto check = [&](const std::string& name) {
        if (QARPath::toNative(QARPath::fromNative(name)) == name || ++wrong > 10) return;
        ADD_FAILURE() << encoding << ' ' << testing::PrintToString(name);
      };
      const bool is_common = encoding == "UTF-8" || encoding == "SJIS";
      std::mt19937 random(1);
      for (int first = 1; first < 256; ++first) {
        check(std::string(1, static_cast<char>(first)));
        if (first % 16 == 15) check(std::string(255, static_cast<char>(first)));
        for (int second = 1; second < 256; second += is_common ? 1 : 17)
          check({static_cast<char>(first), static_cast<char>(second)});
        // Bytes with a meaning in stateful encodings, and others.
        std::string some;
        for (int i = 0; i < 12; ++i) {
          const char* const parts[] = {"\x1B$B", "\x1B(B", "\x1B$)C", "~{", "~}", "+", "-", "\x0E", "\x0F", "F|"};
          const auto next = random() % 32;
          some += next < 10 ? parts[next] : std::string(1, static_cast<char>(random() % 255 + 1));
        }
        check(some);
      }
    });
}

// Characters that the process code encodes as the same bytes are one name, which has one path.
TEST(QARPath, HasOneSpellingForEachName) {
  for (const auto* const locale : {"C", "ja_JP.SJIS", "ja_JP.eucJP", "vi_VN.CP1258"})
    in_environment({{"LC_ALL", locale}}, [&] {
      std::size_t accepted = 0;
      for (char32_t unit = 1; unit < 0x10000; ++unit) {
        const std::u16string path(1, static_cast<char16_t>(unit));
        try {
          const auto name = QARPath::toNative(path);
          ASSERT_EQ(QARPath::fromNative(name), path) << locale;
          ++accepted;
        } catch (const ku::i18n::CvtExceptionBase&) {
        }
      }
      EXPECT_GT(accepted, 200U);
    });
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
