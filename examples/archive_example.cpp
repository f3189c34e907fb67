#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARData.hpp>

#include <iostream>
#include <string>

using Korvane::qardatainterfaces::QARContext;
using Korvane::qardatainterfaces::QARData;
using Korvane::qardatainterfaces::QARMetaData;

void describe(QARContext& context) {
  context.setVersionInfo("shop 2.4");
  context.setSolutionKey(std::string("\x13\x00\x37", 3));
}

void print(QARContext& context) {
  std::cout << "version " << context.getVersionInfo() << '\n'
            << "solution key of " << context.getSolutionKey().size() << " bytes, compiler key of "
            << context.getCompilerKey().size() << '\n';
}

void fill(QARData& catalogue) {
  catalogue.addFileMapEntry(u"bin/start", u"record 1", false);
  catalogue.addFileMapEntry(u"doc/Maße.txt", u"record 2", true);
  catalogue.addFileMapEntry(u"Doc", u"record 3", false);
  catalogue.addRootMacroMapEntry(u"HOME", u"/opt/shop");
  catalogue.addClassPathEntry(u"lib/first");
  catalogue.addClassPathEntry(u"lib/second");
  std::cout << catalogue.addClassPathEntry(u"lib/first") << " class paths\n";  // duplicates are kept, in order
}

void change(QARData& catalogue) {
  catalogue.getFileMap().at(u"bin/start").setUserData("mode=0755");
  if (catalogue.existEntry(u"Doc")) {
    const QARMetaData kept = catalogue.getFileMap().at(u"Doc").getMetaData();
    const auto count = catalogue.replaceFileMapEntry(u"Doc", u"doc/index", u"record 4");
    catalogue.getFileMap().at(u"doc/index").getMetaData() = kept;
    std::cout << count << " entries\n";
  }
}

void print(QARData& catalogue) {
  for (const auto& [name, record] : catalogue.getFileMap()) {
    std::cout << ku::i18n::to_string(name) << " -> " << ku::i18n::to_string(record.getName());
    if (record.isDemo()) std::cout << ", demo";
    if (!record.getUserData().empty()) std::cout << ", " << record.getUserData();
    std::cout << '\n';
  }
  for (const auto& [name, value] : catalogue.getRootMacroMap())
    std::cout << ku::i18n::to_string(name) << " = " << ku::i18n::to_string(value) << '\n';
  for (const auto& path : catalogue.getClassPathVector()) std::cout << ku::i18n::to_string(path) << '\n';
}

int main() {
  QARContext context;
  describe(context);
  print(context);

  QARData catalogue;
  fill(catalogue);
  change(catalogue);
  print(catalogue);
}
