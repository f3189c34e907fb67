#include "entryNames.hpp"

#include <algorithm>
#include <climits>
#include <string_view>
#include <vector>

namespace packing {
namespace {

/// The elements of a path, without empty and "." ones.
std::vector<std::string_view> elementsOf(std::string_view path) {
  std::vector<std::string_view> elements;
  for (std::size_t begin = 0, end = 0; end != path.npos; begin = end + 1) {
    end = path.find('/', begin);
    const auto element = path.substr(begin, end == path.npos ? end : end - begin);
    if (!element.empty() && element != ".") elements.push_back(element);
  }
  return elements;
}

}  // namespace

std::string relativeName(const std::string& name) {
  if (name.starts_with('/')) throw BadArchive(name + ": the name is absolute");
  if (name.size() >= PATH_MAX) throw BadArchive(name.substr(0, 100) + "...: the name is too long");
  std::string result;
  for (const auto element : elementsOf(name)) {
    if (element == "..") throw BadArchive(name + ": the name leads upwards");
    if (!result.empty()) result += '/';
    result += element;
  }
  return result;
}

bool mayLeadOut(const std::string& name, const std::string& target) {
  if (target.starts_with('/')) return true;
  const auto depth = std::count(name.begin(), name.end(), '/');
  const auto elements = elementsOf(target);
  const auto isUp = [](std::string_view element) { return element == ".."; };
  const auto firstName = std::find_if_not(elements.begin(), elements.end(), isUp);
  return firstName - elements.begin() > depth || std::any_of(firstName, elements.end(), isUp);
}

}  // namespace packing
