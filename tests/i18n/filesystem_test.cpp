#include "support/TemporaryDirectory.hpp"
#include "support/environment.hpp"

#include <ku/filesystem/status.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>

namespace ku::filesystem {
namespace {

using namespace std::string_literals;
using detail::make_native_form;
using Traits = detail::process_code_traits;

TEST(ProcessCodeTraits, GoStrictlyThereAndBack) {
  in_environment({{"LC_ALL", "de_DE.UTF-8"}}, [] {
    i18n::ZrLocale::global(i18n::ZrLocale("C.ISO-8859-1"));  // of content, not of names
    const std::u16string path = u"/\u00FC\u65E5\U0001F600\uFEFF\u200B.txt";
    const std::string native = "/\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80\xEF\xBB\xBF\xE2\x80\x8B.txt";
    EXPECT_EQ(make_native_form(path), native);
    EXPECT_EQ(Traits::to_internal(native), path);
    for (const auto& bad : {u"a\xD800"s, u"\xDC00z"s, u"a\0b"s})
      EXPECT_THROW(Traits::to_external(bad), i18n::CvtInvalidCharacter);
    for (const auto& bad : {"\xFF"s, "a\xC3"s, "\xED\xA0\x80"s, "\xC0\xAF"s})
      EXPECT_THROW(Traits::to_internal(bad), i18n::CvtInvalidCharacter);
    EXPECT_EQ(i18n::to_string(u"a\xD800z"), "a\xEF\xBF\xBDz") << "messages always come out";
  });
}

TEST(ProcessCodeTraits, AreUtf8WhereTheEnvironmentNamesNoKnownEncoding) {
  for (const auto* const locale : {"C", "POSIX", "de_DE", "de_DE.no-such-encoding"})
    in_environment({{"LANG", locale}}, [] { EXPECT_EQ(make_native_form(u"\u00FC"), "\xC3\xBC"); });
}

TEST(Status, TellsKindAndLengthLinksFollowed) {
  const TemporaryDirectory directory;
  constexpr auto size = (std::uint64_t{1} << 32) + 7;
  directory.file("file", "");
  std::filesystem::resize_file(directory.native("file"), size);
  directory.link("link", "file");
  directory.link("loop", "loop");
  EXPECT_EQ(status(directory.native("link")).type, file_type::regular);
  EXPECT_EQ(status(directory.native("link")).length, size);
  for (const auto* const absent : {"missing", "file/below"}) {
    EXPECT_EQ(status(directory.native(absent)).type, file_type::not_found);
    EXPECT_EQ(status(directory.native(absent)).length, 0U);
  }
  EXPECT_EQ(status("/").type, file_type::directory);
  EXPECT_EQ(status("/dev/null").type, file_type::other);
  EXPECT_THROW(status(directory.native("loop")), std::system_error);
}

}  // namespace
}  // namespace ku::filesystem
