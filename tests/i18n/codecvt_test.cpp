#include <ku/i18n/codecvt.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ku::i18n {
namespace {

std::string at(std::initializer_list<int> bytes) { return {bytes.begin(), bytes.end()}; }

// Well-formed byte sequences according to the Unicode standard's table 3-7, and U+FFFD for each maximal subpart.
std::u16string slow_decode_utf8(const std::string& text) {
  static constexpr struct {
    int first, last, second_first, second_last;
    std::size_t length;
  } rows[] = {{0x00, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
              {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
              {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};
  std::u16string result;
  for (std::size_t i = 0; i < text.size();) {
    const int first = static_cast<unsigned char>(text[i++]);
    const auto* const row =
        std::find_if(rows, std::end(rows), [&](auto& r) { return first >= r.first && first <= r.last; });
    std::size_t left = row == std::end(rows) ? 1 : row->length - 1;
    int code = left == 0 ? first : first & (0x3F >> left);
    for (bool second = true; row != std::end(rows) && left > 0 && i < text.size(); second = false, --left) {
      const int byte = static_cast<unsigned char>(text[i]);
      if (byte < (second ? row->second_first : 0x80) || byte > (second ? row->second_last : 0xBF)) break;
      code = code << 6 | (byte & 0x3F);
      ++i;
    }
    if (left > 0) code = 0xFFFD;
    if (code > 0xFFFF) result += static_cast<char16_t>(0xD7C0 + (code >> 10));
    result += static_cast<char16_t>(code > 0xFFFF ? 0xDC00 | (code & 0x3FF) : code);
  }
  return result;
}

TEST(Utf8, IsJudgedByTheTableAtEveryBorder) {
  const std::vector<int> borders{0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF,
                                 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  codecvt_string_to_ustring strict("UTF-8", false), tolerant("UTF-8", true);
  codecvt_ustring_to_string back("UTF-8", false);
  std::vector<std::string> texts{""};
  for (std::size_t length = 1; length <= 4; ++length) {
    std::vector<std::string> longer;
    for (const auto& text : texts)
      for (const int byte : borders) longer.push_back(text + at({byte}));
    texts = std::move(longer);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const auto expected = slow_decode_utf8(texts[i]);
      ASSERT_EQ(tolerant.convert(texts[i].data(), length), expected) << testing::PrintToString(texts[i]);
      if (expected.find(u'\xFFFD') == std::u16string::npos) {
        ASSERT_EQ(strict.convert(texts[i].data(), length), expected);
        ASSERT_EQ(back.convert(expected.data(), expected.size()), texts[i]);
      } else if (length < 4 || i % 7 == 0) {  // exceptions are slow
        ASSERT_THROW(strict.convert(texts[i].data(), length), CvtInvalidCharacter)
            << testing::PrintToString(texts[i]);
      }
    }
  }
}

template <class Converter>
bool refuses(const std::string& encoding, bool tolerant) try {
  Converter(encoding, tolerant);
  return false;
} catch (const CvtInvalidCharacter&) {
  return false;
} catch (const CvtExceptionBase& error) {
  const auto plain = encoding.substr(0, encoding.find('\0'));
  return std::string(error.what()).find('"' + plain) != std::string::npos;
}

// In each of these, Python's codecs replace only the lead byte.
TEST(Malformed, LeadBytesTakeNoAsciiWithThem) {
  const struct {
    const char *encoding, *bytes;
    const char16_t* text;
  } cases[] = {{"CP949",
                "\xC8"
                "C:\\t",
                u"\uFFFDC:\\t"},
               {"UHC", "\xB0\\n", u"\uFFFD\\n"},
               {"CP932",
                "\x86"
                "C:\\",
                u"\uFFFDC:\\"},
               {"JOHAB", "\x85\\n", u"\uFFFD\\n"},
               {"BIG5-HKSCS", "\x85\\n", u"\uFFFD\\n"},
               {"GB18030", "\x81\x30", u"\uFFFD"},
               {"EUC-JP", "\xA9\xA1z", u"\uFFFDz"}};
  for (const auto& [encoding, bytes, text] : cases)
    EXPECT_EQ(codecvt_string_to_ustring(encoding, true).convert(bytes, std::string(bytes).size()), text) << encoding;
  for (const std::string encoding : {"CP949", "CP932", "JOHAB", "BIG5-HKSCS", "BIG5", "GBK", "EUC-KR"}) {
    codecvt_string_to_ustring strict(encoding, false), tolerant(encoding, true);
    for (int lead = 0x80; lead <= 0xFF; ++lead)
      for (int trail = 0x20; trail < 0x80; ++trail) {
        const auto pair = at({lead, trail});
        try {
          strict.convert(pair.data(), 2);
        } catch (const CvtInvalidCharacter&) {
          ASSERT_EQ(tolerant.convert(pair.data(), 2).back(), strict.convert(&pair[1], 1)[0])
              << encoding << testing::PrintToString(pair);
        }
      }
  }
}

TEST(Encodings, AreRefusedByNameWithoutBeingTakenForAnInvalidCharacter) {
  using namespace std::string_literals;
  for (const auto& name :
       {"no-such-encoding"s, "UTF-8,version=1"s, "ibm-37_P100-1995,swaplfnl"s, "UTF-8\0"s, "UTF-8\0x"s,
        "x11-compound-text"s, "COMPOUND_TEXT"s, "iscii-dev"s, "SCSU"s, "LMBCS-1"s, "../x"s, "/etc/passwd"s,
        "ISO-8859-1/../UTF-8"s, " "s, std::string(60, 'x'), std::string(1 << 20, 'x')})
    for (const bool tolerant : {false, true}) {
      EXPECT_TRUE(refuses<codecvt_string_to_ustring>(name, tolerant)) << name.substr(0, 80);
      EXPECT_TRUE(refuses<codecvt_ustring_to_string>(name, tolerant)) << name.substr(0, 80);
    }
}

TEST(Encodings, RefuseEscapesThatNobodyKnows) {
  for (const std::string text : {"\x1B\x01\x01", "\x1B$)C"})
    EXPECT_THROW(codecvt_string_to_ustring("ISO-2022-JP", false).convert(text.data(), text.size()),
                 CvtInvalidCharacter);
}

TEST(Encodings, WithoutAsciiHaveAVisibleSubstituteToo) {
  codecvt_ustring_to_string encoder("GB_2312-80", true);
  EXPECT_EQ(encoder.convert(u"a\u4E00", 2), "\x23\x3F\x52\x3B");
}

TEST(Ascii, WidensAndRefusesTheRest) {
  const codecvt_ascii_to_ustring widen;
  EXPECT_EQ(widen.convert("\0\x1A~\x7F", 4), std::u16string(u"\0\x1A~\x7F", 4));
  EXPECT_EQ(widen.convert(nullptr, 0), u"");
  EXPECT_THROW(widen.convert("a\x80", 2), CvtInvalidCharacter);
}

}  // namespace
}  // namespace ku::i18n
