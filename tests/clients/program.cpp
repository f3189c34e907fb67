// Uses code pages and messages, to check that each kind of build has them.
#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <fstream>
#include <iostream>
#include <string>

int main() try {
  std::ofstream("notes.txt") << "Gr\xFC\xDF"
                                "e\n";
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("de_DE.ISO-8859-1"));
  Korvane::qardatainterfaces::QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".txt"}, new Korvane::qardatainterfaces::LCPToUTF8Transform);
  const auto reader = factory.getReader(u"notes.txt");
  const auto& content = reader->readAll();
  std::cout << std::string(content.begin(), content.end());
  factory.getReader(u"missing");
} catch (const Korvane::rtxi18nutil::DeployedException& error) {
  std::cout << error.identifier() << ": " << error.what() << '\n';
}
