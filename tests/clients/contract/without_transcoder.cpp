#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>

#include "support/CapturedOutput.hpp"
#include "support/content.hpp"

#include <gtest/gtest.h>

#if __has_include(<ku/i18n/Transcoder.hpp>) || __has_include(<ku/filesystem/NameDecoder.hpp>)
#error "this test needs a platform without additions"
#endif

namespace Korvane::qardatainterfaces {
namespace {

struct Counting final : QARCodePageTransform {
  using QARCodePageTransform::QARCodePageTransform;
  void lost(const QARConversionLoss& loss, QARMetaData& meta) override {
    meta.setUserData(std::to_string(loss.malformed) + ' ' + std::to_string(loss.unmappable) + ' ' +
                     std::to_string(loss.places.size()));
  }
};

TEST(QARCodePageTransform, ReportsWhichStageLostText) {
  const CapturedOutput output;
  for (const auto& [in, losses] :
       {std::pair("plain", "none"), {"\xFF\xFF", "1 1 0"}, {"\xE2\x82\xAC\xE2\x82\xAC", "0 1 0"}}) {
    Counting substituting("", "UTF-8", "KOI8-R"), refusing("", "UTF-8", "KOI8-R", Counting::OnLoss::fail);
    QARByteArray out(std::string("before"));
    QARMetaData meta(false, "none");
    EXPECT_EQ(refusing.transform(QARByteArray(std::string(in)), out, meta), std::string(losses) == "none");
    EXPECT_EQ(meta.getUserData(), losses);
    EXPECT_EQ(text(out), std::string(losses) == "none" ? in : "before");
    EXPECT_TRUE(substituting.transform(QARByteArray(std::string(in)), out, meta));
    EXPECT_EQ(text(out), std::string(losses) == "none" ? in : "??");
  }
  EXPECT_EQ(output.text(), "");
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
