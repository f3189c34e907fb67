#include "CodePageSurvey.hpp"
#include "IconvComparison.hpp"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string read_file(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The page with new text between `<!-- table: NAME -->` and `<!-- end -->`: the table of that name.
std::string fill(const std::string& page, const std::map<std::string, std::string>& tables) {
  std::istringstream lines(page);
  std::string filled;
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line == "<!-- end -->") inside = false;
    if (!inside) filled += line + '\n';
    constexpr std::string_view mark = "<!-- table: ";
    if (line.compare(0, mark.size(), mark) != 0) continue;
    const auto name = line.substr(mark.size(), line.find(' ', mark.size()) - mark.size());
    filled += tables.at(name);
    inside = true;
  }
  return filled;
}

}  // namespace

// codepages PAGE     writes docs/codepages.md to standard output, with new tables and the reasons from PAGE
// codepages thinned  only checks the converters, with a sample
// Errors go to standard error.
int main(int count, char** arguments) {
  if (count != 2) return EXIT_FAILURE;
  const bool complete = arguments[1] != std::string_view("thinned");
  const auto surveys = survey_code_pages(complete ? SurveyDepth::complete : SurveyDepth::thinned);
  std::vector<std::string> faults;
  if (surveys.size() < 200) faults.emplace_back("hardly any code pages were found");
  for (const auto& survey : surveys) {
    faults.insert(faults.end(), survey.faults.begin(), survey.faults.end());
    const auto codes = survey.kept + survey.rejected + survey.in_pieces + survey.not_read.size();
    if (complete && !survey.refused && codes != 0x110000)
      faults.push_back(survey.name + " does not account for all code points");
  }
  if (complete) {
    const auto page = read_file(arguments[1]);
    const auto comparisons = compare_with_iconv();
    for (const auto& comparison : comparisons)
      faults.insert(faults.end(), comparison.faults.begin(), comparison.faults.end());
    const auto differences = describe_differences(comparisons, Reasons(page), faults);
    std::cout << fill(page, {{"versions", versions() + '\n'},
                             {"pages", describe_pages(comparisons)},
                             {"differences", differences},
                             {"converters", describe(surveys)}});
  }
  for (const auto& fault : faults) std::cerr << fault << '\n';
  return faults.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
