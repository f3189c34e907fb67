#include <qardatainterfaces/QARPath.hpp>

#include "support/environment.hpp"

#include <ku/i18n/codecvt.hpp>

#include <random>
#include <vector>

namespace Korvane::qardatainterfaces {
namespace {

using namespace std::string_literals;

// The results of another program: Python's codecs with the error handler "surrogateescape".
const struct {
  const char* locale;
  std::string name;
  std::u16string path;
} names[] = {{"C", "", u""},
             {"C", "/a.b/\xC3\xBC\xF0\x9F\x98\x80", u"/a.b/\u00FC\U0001F600"},
             {"C", "\xFF.txt", u"\xDCFF.txt"},
             {"C", "a\xC3", u"a\xDCC3"},
             {"C", "\xC3/\xBC", u"\xDCC3/\xDCBC"},
             {"C", "\xED\xA0\x80\xED\xB2\x80", u"\xDCED\xDCA0\xDC80\xDCED\xDCB2\xDC80"},
             {"C", "\xC0\xAF\xF0\x9F\x98z", u"\xDCC0\xDCAF\xDCF0\xDC9F\xDC98z"},
             {"en_US.ISO-8859-1", "\x80\xE9\xFF", u"\x80\u00E9\u00FF"},
             {"el_GR.ISO-8859-7", "\xE1\xFF\xD2", u"\u03B1\xDCFF\xDCD2"},
             {"ja_JP.SJIS", "\x83\x5C\x83\x2F\x81", u"\u30BD\xDC83/\xDC81"},
             {"ja_JP.eucJP", "\x8F\xA2\xAF\xA4\xA2\x8F\xA2/\xA4", u"\u02D8\u3042\xDC8F\xDCA2/\xDCA4"},
             {"ja_JP.ISO-2022-JP", "\x1B$BF|\x1B(B", u"\u65E5"}};

TEST(QARPath, IsTextWhereTheNameIs) {
  for (const auto& [locale, name, path] : names)
    in_environment({{"LC_ALL", locale}}, [&name = name, &path = path] {
      EXPECT_EQ(QARPath::fromNative(name), path) << testing::PrintToString(name);
      EXPECT_EQ(QARPath::toNative(path), name);
    });
}

// Different names have different paths: each name can be converted to a path and back.
TEST(QARPath, HasTheBytesOfEveryName) {
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

TEST(QARPath, IsRefusedWhereNoNameHasIt) {
  const std::pair<const char*, std::u16string> refused[] = {{"C", u"a\xD800"s},
                                                            {"C", u"a\xDC00"s},
                                                            {"C", u"\xDC41"s},
                                                            {"C", u"\xDD00"s},
                                                            {"C", u"a\0b"s},
                                                            {"C", u"\xDCC3\xDCBC"s},
                                                            {"C", u"x\xDCF0\u00FC\xDC9F\xDCC3\xDCBC"s},
                                                            {"en_US.ISO-8859-1", u"\xDCFF"s},
                                                            {"en_US.ISO-8859-1", u"\u65E5"s},
                                                            {"ja_JP.SJIS", u"\xDC83\\"s},
                                                            {"ja_JP.eucJP", u"\xDCA4\xDCA2"s},
                                                            {"ja_JP.ISO-2022-JP", u"\x1B"s}};
  for (const auto& [locale, path] : refused)
    in_environment({{"LC_ALL", locale}}, [&path = path] {
      EXPECT_THROW(QARPath::toNative(path), ku::i18n::CvtExceptionBase) << testing::PrintToString(path);
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
