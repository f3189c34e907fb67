#include "CodePageSurvey.hpp"

#include <cstdlib>
#include <iostream>
#include <string_view>

// Writes docs/codepages.md to standard output, and what is wrong with the converters to standard error. With the
// argument "thinned" it only looks for faults, and at less.
int main(int count, char** arguments) {
  const bool complete = count == 1 || arguments[1] != std::string_view("thinned");
  const auto surveys = survey_code_pages(complete ? SurveyDepth::complete : SurveyDepth::thinned);
  bool sound = surveys.size() > 200;
  for (const auto& survey : surveys) {
    auto faults = survey.faults;
    if (complete && !survey.refused && survey.kept + survey.rejected + survey.not_read.size() != 0x110000)
      faults.push_back(survey.name + " does not account for all code points");
    for (const auto& fault : faults) std::cerr << fault << '\n';
    sound = sound && faults.empty();
  }
  if (complete) std::cout << describe(surveys);
  return sound ? EXIT_SUCCESS : EXIT_FAILURE;
}
