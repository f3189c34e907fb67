// Locales and the process code, as determined from the environment.

#include "support/environment.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/table.hpp"

#include <ku/filesystem/NameDecoder.hpp>
#include <ku/filesystem/process_code_traits.hpp>
#include <ku/filesystem/status.hpp>
#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>

#include <clocale>
#include <cstdlib>
#include <sstream>

namespace ku::i18n {
namespace {

using namespace std::string_literals;
using Traits = filesystem::detail::process_code_traits;

std::string parts(const ZrLocale& locale) {
  return locale.name() + ": " + locale.language() + ' ' + locale.encoding();
}

class Environments : public RowTest {};

TEST_P(Environments, SetTheFirstLocale) {
  std::map<std::string, std::string> variables;
  std::istringstream words(row.at(0));
  for (std::string word; words >> word;) variables[word.substr(0, word.find('='))] = word.substr(word.find('=') + 1);
  in_environment(variables, [this] {
    const auto first = ZrLocale::global(ZrLocale("ja_JP.SJIS"));
    ::setenv("LC_ALL", "later", 1);
    for (const auto& locale : {first, ZrLocale("")}) {  // the environment is asked once
      EXPECT_EQ(locale.name(), row.at(1));
      EXPECT_EQ(locale.language(), row.at(2));
      EXPECT_EQ(locale.encoding(), row.at(3));
      EXPECT_EQ(locale.languages(), row.at(4));
      EXPECT_EQ(MessageCatalog::get_message(qar::qardatainterfaces::QARDATAINTERFACES_FILE_NOT_EXIST("x"), locale),
                row.units(5));
    }
    EXPECT_EQ(parts(ZrLocale::global()), "ja_JP.SJIS: ja SJIS");
  });
}

INSTANTIATE_TEST_SUITE_P(, Environments, testing::ValuesIn(table("tests/i18n/environments.txt")), RowTest::name);

// localedef creates the locales in the folder LOCPATH.
TEST(ZrLocale, TakesTheEncodingOfTheInstalledLocaleWhereItsNameHasNone) {
  const TemporaryDirectory directory;
  const auto define = [&](const std::string& name, const std::string& encoding) {
    const auto command =
        "localedef --no-archive -i " + name + " -f " + encoding + " '" + directory.native(name) + "' >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
  };
  if (!define("de_DE", "ISO-8859-1") || !define("de_DE@euro", "ISO-8859-15"))
    GTEST_SKIP() << "the package locales is not installed";
  in_environment({{"LOCPATH", directory.native("")}, {"LANG", "de_DE@euro"}}, [] {
    EXPECT_EQ(parts(ZrLocale("")), "de_DE@euro: de ISO-8859-15");
    EXPECT_EQ(parts(ZrLocale("de_DE")), "de_DE: de ISO-8859-1");
    EXPECT_EQ(parts(ZrLocale("de_DE.KOI8-R")), "de_DE.KOI8-R: de KOI8-R");
    EXPECT_EQ(parts(ZrLocale("fr_FR")), "fr_FR: fr UTF-8");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C") << "the locale of the process is not ours to change";
  });
}

TEST(ProcessCode, ConvertsPathsStrictlyAndDiffersFromThatOfContent) {
  in_environment({{"LC_ALL", "de_DE.UTF-8"}}, [] {
    ZrLocale::global(ZrLocale("C.ISO-8859-1"));
    const std::u16string path = u"/\u00FC\u65E5\U0001F600\uFEFF\u200B.txt";
    const std::string native = "/\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80\xEF\xBB\xBF\xE2\x80\x8B.txt";
    EXPECT_EQ(filesystem::detail::make_native_form(path), native);
    EXPECT_EQ(Traits::to_internal(native), path);
    filesystem::NameDecoder names;
    for (const auto& bad : {u"a\xD800"s, u"\xDC00z"s, u"a\0b"s})
      EXPECT_THROW(Traits::to_external(bad), CvtInvalidCharacter);
    for (const auto& bad : {"\xFF"s, "a\xC3"s, "\xED\xA0\x80"s, "\xC0\xAF"s}) {
      EXPECT_THROW(Traits::to_internal(bad), CvtInvalidCharacter);
      EXPECT_EQ(names.decode(bad), std::nullopt);
      EXPECT_EQ(names.decode(native), path);
    }
    EXPECT_EQ(to_string(u"a\xD800z"), "a\xEF\xBF\xBDz") << "messages always come out";
  });
  for (const auto& [locale, native] : {std::pair("en_US.IBM-037", "\x81\x82"), {"ja_JP.ISO-2022-JP", "ab"}})
    in_environment({{"LANG", locale}}, [native = native] {
      EXPECT_EQ(to_string(u"ab"), native);
      EXPECT_EQ(Traits::to_internal(native), u"ab");
    });
  EXPECT_EQ(parts(ZrLocale("C")), "C:  UTF-8");
  for (const auto* const locale : {"C", "de_DE", "de_DE.no-such-encoding"})  // UTF-8 if the encoding is unknown
    in_environment({{"LANG", locale}}, [] { EXPECT_EQ(Traits::to_external(u"\u00FC"), "\xC3\xBC"); });
}

TEST(Status, ReturnsKindAndLengthAndFollowsLinks) {
  using namespace filesystem;
  const TemporaryDirectory directory;
  directory.file("file", "");
  std::filesystem::resize_file(directory.native("file"), (1UL << 32) + 7);
  directory.link("link", "file");
  directory.link("loop", "loop");
  const auto [type, length] = status(directory.native("link"));
  EXPECT_TRUE(type == file_type::regular && length == (1UL << 32) + 7);
  for (const auto* const absent : {"missing", "file/below"})
    EXPECT_EQ(status(directory.native(absent)).type, file_type::not_found) << absent;
  EXPECT_EQ(status("/").type, file_type::directory);
  EXPECT_EQ(status("/dev/null").type, file_type::other);
  EXPECT_THROW(status(directory.native("loop")), std::system_error);
}

}  // namespace
}  // namespace ku::i18n
