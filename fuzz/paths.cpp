// Compares the extension rule with a simple implementation, and converts names to paths and back.

#include "input.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

using namespace Korvane::qardatainterfaces;

namespace {

// Scans from the front, while the library searches from the back.
std::u16string extension(const std::u16string& whole) {
  std::u16string path(whole.c_str());
  if (path.compare(0, 3, u"//:") == 0) path.erase(0, 3);
  std::u16string last;
  std::size_t names = 0;
  for (const char16_t unit : path + u"/")
    if (unit != u'/') {
      last += unit;
    } else if (!last.empty()) {
      ++names;
      last.clear();
    }
  if (!path.empty() && path.back() == u'/') {
    const bool network = path.size() > 3 && path.compare(0, 2, u"//") == 0 && path[2] != u'/' && names == 1;
    return names == 0 || network ? u"" : u".";
  }
  std::u16string result;
  for (const char16_t unit : path)
    if (unit == u'/')
      result.clear();
    else if (unit == u'.' || !result.empty())
      result = unit == u'.' ? u"." : result + unit;
  return result;
}

// Whether the path has no native name, or a name whose path it is.
bool isSound(const std::u16string& path) try {
  return QARPath::fromNative(QARPath::toNative(path)) == path;
} catch (const ku::i18n::CvtExceptionBase&) {
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  switch (input.number() % 4) {
    case 0: {
      const std::string name = input.text(16).c_str();
      require(QARPath::toNative(QARPath::fromNative(name)) == name);
      break;
    }
    case 1: require(isSound(input.name(40))); break;
    default: {
      const std::u16string registered = input.name(8), start = input.number() % 4 == 1 ? u"//:" : u"";
      const auto path = start + input.name(255), its = extension(path);
      QARFileReaderFactory factory;
      factory.addFileTypeHandler({registered}, new UTF8ToLCPTransform);
      require(factory.willBeTransformed(path) == (!its.empty() && its == registered));
      factory.addFileTypeHandler({its}, new UTF8ToLCPTransform);
      require(factory.willBeTransformed(path) == !its.empty());
    }
  }
  return 0;
}
