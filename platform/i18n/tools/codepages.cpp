#include "CodePageSurvey.hpp"

#include <cstdlib>
#include <iostream>

// Writes docs/codepages.md to standard output.
int main() {
  const auto surveys = survey_code_pages(SurveyDepth::complete);
  bool sound = true;
  for (const auto& survey : surveys)
    for (const auto& fault : survey.faults) {
      std::cerr << fault << '\n';
      sound = false;
    }
  std::cout << describe(surveys);
  return sound ? EXIT_SUCCESS : EXIT_FAILURE;
}
