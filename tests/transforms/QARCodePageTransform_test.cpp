#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/Reporting.hpp"
#include "support/table.hpp"
#include "support/transformed.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <stdexcept>

namespace Korvane::qardatainterfaces {
namespace {

using namespace std::string_literals;
using OnLoss = QARCodePageTransform::OnLoss;

class Losses : public RowTest {};

TEST_P(Losses, AreReportedOrRefused) {
  const auto from = row.at(0), to = row.at(1), in = row.at(2), expected = row.at(3), losses = row.at(4);
  const bool keeps_all = losses.empty();
  const CapturedOutput output;
  for (const auto on_loss : {OnLoss::substitute, OnLoss::fail}) {
    Reporting transform(from, to, on_loss);
    const bool succeeds = keeps_all || on_loss == OnLoss::substitute;
    QARByteArray bytes(in), out("before"s);
    unsigned char byte = 0;
    out.read(&byte, 1);
    QARMetaData meta(false, "");
    EXPECT_EQ(transform.transform(bytes, out, meta), succeeds);
    EXPECT_EQ(meta.getUserData(), losses);
    EXPECT_EQ(text(out), succeeds ? expected : "before");
    EXPECT_TRUE(out.read(&byte, 1) == 1 && byte == (succeeds ? static_cast<unsigned char>(expected[0]) : 'e'));
    meta.setUserData("");
    EXPECT_EQ(transform.transform(bytes, bytes, meta), succeeds) << "in and out are the same";
    EXPECT_EQ(text(bytes), succeeds ? expected : in);
    if (keeps_all) continue;
    QARMetaData unwanted(false, "unwanted");
    EXPECT_THROW(transform.transform(QARByteArray(in), out, unwanted), std::runtime_error);
    EXPECT_EQ(text(out), succeeds ? expected : "before") << "as it was";
  }
  EXPECT_EQ(output.text(), "");
}

INSTANTIATE_TEST_SUITE_P(, Losses, testing::ValuesIn(table("tests/transforms/losses.txt")), RowTest::name);

TEST(QARCodePageTransform, SubstitutesAsTheLocalTransformsDo) {
  const CapturedOutput output;
  const auto all = pattern(3000);
  for (const std::string page : {"SJIS", "KOI8-R", "GB18030", "ISO-2022-JP", "UTF-16", "IBM037", "UTF-8"}) {
    const ContentLocale locale(page);
    LCPToUTF8Transform decoding;
    UTF8ToLCPTransform encoding;
    for (const auto& local : {page, ""s}) {
      Reporting from(local, "UTF-8"), to("UTF-8", local);
      EXPECT_EQ(transformed(from, all), transformed(decoding, all)) << page;
      EXPECT_EQ(transformed(to, all + "日я€"), transformed(encoding, all + "日я€")) << page;
    }
  }
}

TEST(QARCodePageTransform, RefusesUnknownEncodings) {
  using ku::i18n::CvtExceptionBase;
  EXPECT_THROW(Reporting("no-such-page", "UTF-8"), CvtExceptionBase);
  EXPECT_THROW(Reporting("UTF-8", "no-such-page"), CvtExceptionBase);
  EXPECT_THROW(Reporting("UTF-8", "x11-compound-text"), CvtExceptionBase);
  EXPECT_THROW(QARCodePageTransform(nullptr, "", ""), std::logic_error);
  Reporting local("", "UTF-8");
  const ContentLocale locale("no-such-page");
  QARByteArray out("before"s);
  QARMetaData meta(false, "");
  try {
    local.transform(QARByteArray("text"s), out, meta);
    FAIL();
  } catch (const rtxi18nutil::DeployedException& error) {
    EXPECT_EQ(error.identifier(), "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER");
  }
  EXPECT_EQ(text(out) + meta.getUserData(), "before");
}

TEST(QARCodePageTransform, HasANameAndThePoliciesOfTheLocalTransforms) {
  Reporting transform("UTF-8", "KOI8-R");
  EXPECT_STREQ(transform.getId(), "reporting");
  EXPECT_TRUE(transform.allowZeroLengthInputFiles() && !transform.allowZeroLengthOutputFiles());
  EXPECT_TRUE(transform.cleanup() && !transform.isSetup());
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
