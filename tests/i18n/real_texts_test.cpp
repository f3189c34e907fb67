// Real text in the encodings of its languages.

#include <judges.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/table.hpp"
#include "support/transformed.hpp"

#include <sstream>

namespace Korvane::qardatainterfaces {
namespace {

void expect_kept(const std::string& encoding, const std::string& utf8, const std::string& back) {
  ku::i18n::codecvt_string_to_ustring from_utf8("UTF-8", false), decoder(encoding, false);
  ku::i18n::codecvt_ustring_to_string to_utf8("UTF-8", false), encoder(encoding, false);
  const auto units = from_utf8.convert(utf8.data(), utf8.size());
  const auto bytes = encoder.convert(units.data(), units.size());
  const auto read = decoder.convert(bytes.data(), bytes.size());
  if (encoding != lacking_in_iconv) {
    EXPECT_EQ(bytes, Iconv(iconv_name(encoding)).encode(units));
  }
  if (back == "(pieces)") {
    EXPECT_TRUE(read != units && encoder.convert(read.data(), read.size()) == bytes);
  } else {
    EXPECT_EQ(to_utf8.convert(read.data(), read.size()), back);
  }

  const ContentLocale locale(encoding.c_str());
  const CapturedOutput output;
  UTF8ToLCPTransform to_lcp;
  LCPToUTF8Transform from_lcp;
  EXPECT_EQ(transformed(to_lcp, utf8), bytes);
  EXPECT_EQ(transformed(from_lcp, bytes), to_utf8.convert(read.data(), read.size()));
  EXPECT_EQ(output.text(), "") << "a substitute";
}

class RealTexts : public RowTest {};

TEST_P(RealTexts, AreKept) {
  std::istringstream names(row.at(0));
  for (std::string name; names >> name;) {
    SCOPED_TRACE(name);
    try {
      expect_kept(name, row.at(1), row.last());
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, RealTexts, testing::ValuesIn(table("tests/i18n/real_texts.txt")), RowTest::name);

}  // namespace
}  // namespace Korvane::qardatainterfaces
