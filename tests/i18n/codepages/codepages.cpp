#include "CodePageSurvey.hpp"
#include "IconvComparison.hpp"
#include "judges.hpp"
#include "texts.hpp"

#include <gnu/libc-version.h>
#include <unicode/uvernum.h>
#include <ku/i18n/codecvt.hpp>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

template <class Codes>
std::string list(const Codes& codes) {
  std::string text;
  for (const auto code : codes) text += hexadecimal(code) + ' ';
  return text;
}

void print(const CodePageSurvey& survey) {
  if (survey.refused) {
    std::cout << "refused\t" << survey.name << '\n';
    return;
  }
  std::cout << "converter\t" << survey.name << '\t';
  for (const auto& alias : survey.aliases) std::cout << alias << ' ';
  std::cout << '\t' << survey.kept << '\t' << survey.in_pieces << '\t' << list(survey.not_read) << '\t'
            << list(survey.not_rewritten) << '\t' << survey.ascii << '\t' << survey.states << '\n';
}

void print(const IconvComparison& comparison) {
  std::cout << "page\t" << comparison.name << '\t' << comparison.written << '\t' << comparison.in_pieces << '\t'
            << comparison.otherwise << '\n';
  for (const auto& [what, which, is_loss] : comparison.differences)
    std::cout << "difference\t" << comparison.name << '\t' << what << '\t' << which << '\t' << is_loss << '\n';
}

}  // namespace

// codepages          checks the converters and compares them with iconv; prints what codepages_test.py makes the
//                    tables of docs/codepages.md from, a line for each row of them, with tabs between the fields
// codepages thinned  only checks the converters, with a sample
// Errors go to standard error.
int main(int count, char** arguments) {
  const bool complete = count == 1;
  if (!complete && (count != 2 || arguments[1] != std::string_view("thinned"))) return EXIT_FAILURE;
  const auto surveys = survey_code_pages(complete ? SurveyDepth::complete : SurveyDepth::thinned);
  std::vector<std::string> faults;
  if (surveys.size() < 200) faults.emplace_back("hardly any code pages were found");
  for (const auto& survey : surveys) {
    faults.insert(faults.end(), survey.faults.begin(), survey.faults.end());
    const auto codes = survey.kept + survey.rejected + survey.in_pieces + survey.not_read.size();
    if (complete && !survey.refused && codes != 0x110000)
      faults.push_back(survey.name + " does not account for all code points");
    if (complete) print(survey);
  }
  if (complete) {
    for (const auto& comparison : compare_with_iconv()) {
      faults.insert(faults.end(), comparison.faults.begin(), comparison.faults.end());
      print(comparison);
    }
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    ku::i18n::codecvt_string_to_ustring decoder(lacking_in_iconv, false);
    std::cout << "codes\t" << lacking_in_iconv << '\t' << list(to_codes(decoder.convert(all.data(), 256))) << '\n';
    std::cout << "versions\t" << U_ICU_VERSION << '\t' << gnu_get_libc_version() << '\n';
  }
  for (const auto& fault : faults) std::cerr << fault << '\n';
  return faults.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
