// convert_file ENCODING FILE: writes the file to standard output in UTF-8. Used to measure the cost of a process.

#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) try {
  using namespace Korvane::qardatainterfaces;
  if (argc != 3) {
    std::fputs("usage: convert_file ENCODING FILE\n", stderr);
    return 2;
  }
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(std::string("en.") + argv[1]));
  QARFileReaderFactory factory;
  QARByteArray out;
  QARMetaData meta;
  LCPToUTF8Transform().transform(factory.getRuntimeReader(QARPath::fromNative(argv[2]))->readAll(), out, meta);
  return std::fwrite(out.begin(), 1, out.size(), stdout) == out.size() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "convert_file: %s\n", error.what());
  return 1;
}
