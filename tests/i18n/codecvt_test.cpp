#include <ku/i18n/codecvt.hpp>

#include <gtest/gtest.h>

#include <string>

namespace ku::i18n {
namespace {

template <class Converter>
bool refuses(const std::string& encoding, bool tolerant) try {
  Converter(encoding, tolerant);
  return false;
} catch (const CvtInvalidCharacter&) {
  return false;
} catch (const CvtExceptionBase& error) {
  const auto plain = encoding.substr(0, encoding.find('\0'));
  const std::string what = error.what();
  return what.find('"' + plain) != std::string::npos && what.find("U_") == std::string::npos;
}

// As Python's codecs do it; tests/transforms/losses.txt has examples.
TEST(Malformed, LeadBytesTakeNoAsciiWithThem) {
  for (const std::string encoding : {"CP949", "CP932", "JOHAB", "BIG5-HKSCS", "BIG5", "GBK", "EUC-KR"}) {
    codecvt_string_to_ustring strict(encoding, false), tolerant(encoding, true);
    for (int lead = 0x80; lead <= 0xFF; ++lead)
      for (int trail = 0x20; trail < 0x80; ++trail) {
        const std::string pair{static_cast<char>(lead), static_cast<char>(trail)};
        try {
          strict.convert(pair.data(), 2);
        } catch (const CvtInvalidCharacter&) {
          ASSERT_EQ(tolerant.convert(pair.data(), 2), u'\xFFFD' + strict.convert(&pair[1], 1))
              << encoding << testing::PrintToString(pair);
        }
      }
  }
}

TEST(Encodings, AreRefusedByNameWithoutBeingTakenForAnInvalidCharacter) {
  using namespace std::string_literals;
  for (const auto& name : {"no-such-encoding"s, "UTF-8,version=1"s, "ibm-37_P100-1995,swaplfnl"s, "UTF-8\0"s,
                           "UTF-8\0x"s, "x11-compound-text"s, "COMPOUND_TEXT"s, "iscii-dev"s, "SCSU"s, "LMBCS-1"s,
                           "bp65001"s, "cp65001:"s, "cp-65001"s, "../x"s, "/etc/passwd"s, "ISO-8859-1/../UTF-8"s,
                           " "s, std::string(60, 'x'), std::string(1 << 20, 'x')})
    for (const bool tolerant : {false, true}) {
      EXPECT_TRUE(refuses<codecvt_string_to_ustring>(name, tolerant)) << name.substr(0, 80);
      EXPECT_TRUE(refuses<codecvt_ustring_to_string>(name, tolerant)) << name.substr(0, 80);
    }
}

TEST(Converters, BeginInTheInitialStateAfterAnError) {
  codecvt_string_to_ustring decoder("ISO-2022-JP", false);
  EXPECT_THROW(decoder.convert("\x1B$B\xFF", 4), CvtInvalidCharacter);
  EXPECT_EQ(decoder.convert("ab", 2), u"ab");
  codecvt_ustring_to_string encoder("ISO-2022-JP", false);
  EXPECT_THROW(encoder.convert(u"日\uD55C", 2), CvtInvalidCharacter);
  EXPECT_EQ(encoder.convert(u"ab", 2), "ab");
}

TEST(Ascii, WidensAndRefusesTheRest) {
  const codecvt_ascii_to_ustring widen;
  EXPECT_EQ(widen.convert("\0\x1A~\x7F", 4), std::u16string(u"\0\x1A~\x7F", 4));
  EXPECT_EQ(widen.convert(nullptr, 0), u"");
  EXPECT_THROW(widen.convert("a\x80", 2), CvtInvalidCharacter);
}

}  // namespace
}  // namespace ku::i18n
