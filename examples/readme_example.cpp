#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <iostream>

int main() {
  Korvane::qardatainterfaces::QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".txt"}, new Korvane::qardatainterfaces::LCPToUTF8Transform);
  const auto reader = factory.getReader(u"notes.txt");  // throws if it cannot be opened
  const auto& content = reader->readAll();              // in UTF-8, whatever the code page of the locale
  if (!reader->readSucceeded() || reader->readError()) return 1;
  std::cout << std::string(content.begin(), content.end());
}
