// What programs seldom do.

#include "support/ContentLocale.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"
#include "support/environment.hpp"

#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARRecordData.hpp>

namespace Korvane::qardatainterfaces {
namespace {

struct OwnReader final : QARFileReader {
  using QARFileReader::QARFileReader;
  const char* getTransformId() override { return ""; }
  unsigned int read(void*, unsigned int) override { return 0; }
};

TEST(Unusual, ReaderOfAProgramsOwnReadsALargeFile) {
  const TemporaryDirectory directory;
  const auto content = pattern(17 << 20);
  OwnReader reader(directory.file("large", content));
  EXPECT_EQ(reader.ready(), 0);
  EXPECT_TRUE(text(reader.readAll()) == content);
}

TEST(Unusual, ProcessCodeIsNoSupersetOfAscii) {
  const std::map<std::string, std::string> names{{"en_US.IBM-037", "\x81\x82"}, {"ja_JP.ISO-2022-JP", "ab"}};
  for (const auto& name : names)
    in_environment({{"LC_ALL", name.first}}, [&] {
      EXPECT_EQ(ku::i18n::to_string(u"ab"), name.second);
      EXPECT_EQ(ku::filesystem::detail::process_code_traits::to_internal(name.second), u"ab");
    });
}

// Where a byte becomes two units, a block of the decoder can be full before its last byte is.
TEST(Unusual, TextsEndWithHalfACharacterInABlock) {
  std::u16string letters(5441, u'x');  // up to the first run of a full block
  for (int i = 0; i < 8192; ++i) letters += u"\U00010330";
  const auto bytes = ku::i18n::codecvt_ustring_to_string("BOCU-1", false).convert(letters.data(), letters.size());
  const ContentLocale locale("BOCU-1");
  QARByteArray out;
  QARMetaData meta;
  LCPToUTF8Transform().transform(QARByteArray(bytes), out, meta);
  EXPECT_TRUE(text(out) ==
              ku::i18n::codecvt_ustring_to_string("UTF-8", false).convert(letters.data(), letters.size()));
}

TEST(Unusual, EscapesThatNobodyKnowsAreInvalid) {
  for (const std::string text : {"\x1B\x01\x01", "\x1B$)C"})
    EXPECT_THROW(ku::i18n::codecvt_string_to_ustring("ISO-2022-JP", false).convert(text.data(), text.size()),
                 ku::i18n::CvtInvalidCharacter);
}

TEST(Unusual, ValuesMeetThemselvesAndOthersOfAnotherSize) {
  const QARByteArray bytes(std::string("bytes"));
  EXPECT_FALSE(QARByteArray(std::string("byte")) == bytes);
  QARContext context;
  context.setTarvoKey(bytes);
  unsigned char first[2];
  context.getTarvoKey().read(&first[0], 1);
  context = *&context;
  context.getTarvoKey().read(&first[1], 1);
  EXPECT_EQ(first[1], 'y') << "the read position, too, is its own";
  QARRecordData record;
  record.setDemo(false);
  EXPECT_FALSE(record.isDemo());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
