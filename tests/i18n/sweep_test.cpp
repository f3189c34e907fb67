#include <CodePageSurvey.hpp>

#include <ku/i18n/codecvt.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <sstream>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr SurveyDepth depth = SurveyDepth::thinned;
#else
constexpr SurveyDepth depth = SurveyDepth::complete;
#endif

TEST(CodePages, LoseNothingInSilenceAndAreAsDocumented) {
  const auto start = std::chrono::steady_clock::now();
  const auto surveys = survey_code_pages(depth);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;

  ASSERT_GT(surveys.size(), 200U);
  std::uint64_t refused = 0, checks = 0, kept = 0, rejected = 0, not_read = 0, not_rewritten = 0;
  for (const auto& survey : surveys) {
    for (std::size_t i = 0; i < survey.faults.size() && i < 5; ++i) ADD_FAILURE() << survey.faults[i];
    refused += survey.refused;
    checks += survey.checks;
    kept += survey.kept;
    rejected += survey.rejected;
    not_read += survey.not_read.size();
    not_rewritten += survey.not_rewritten.size();
    if (depth == SurveyDepth::complete && !survey.refused) {
      EXPECT_EQ(survey.kept + survey.rejected + survey.not_read.size(), 0x110000U) << survey.name;
    }
  }
  std::cout << surveys.size() << " converters, " << refused << " of them refused; " << checks << " checks in "
            << time.count() << " s: " << kept << " kept, " << rejected << " rejected, " << not_read << " not read, "
            << not_rewritten << " not rewritten\n";

  if (depth == SurveyDepth::thinned) return;
  std::ostringstream published;
  published << std::ifstream(ZRQAR_SOURCE_DIR "/docs/codepages.md").rdbuf();
  EXPECT_EQ(describe(surveys), published.str()) << "write it anew with ./dev codepages";
}

}  // namespace
