#include "extensions.hpp"

#include "UsageError.hpp"

#include <qardatainterfaces/QARPath.hpp>

namespace qarread {
namespace {

std::u16string parseExtension(const std::string& text) {
  // An extension begins at the last dot of a name, so no other text can match. The other characters are refused
  // because they show a mistake: a list that is separated or quoted otherwise, or a pattern.
  const bool isMistake = text.find_first_of(":;*?\"' \t") != text.npos;
  if (text.empty() || text.find_first_of("./", 1) != text.npos || text == "/" || isMistake)
    throw UsageError("'" + text + "' is not an extension");
  return Korvane::qardatainterfaces::QARPath::fromNative(text[0] == '.' ? text : "." + text);
}

}  // namespace

std::vector<std::u16string> parseExtensions(const std::string& list) {
  std::vector<std::u16string> extensions;
  for (std::size_t begin = 0, end = 0; end != list.npos; begin = end + 1) {
    end = list.find(',', begin);
    extensions.push_back(parseExtension(list.substr(begin, end - begin)));
  }
  return extensions;
}

}  // namespace qarread
