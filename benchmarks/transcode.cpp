// transcode SCRIPT ENCODING TIMES: converts the same mebibyte to UTF-8 so many times, for tools that count
// instructions.

#include "corpora.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char** argv) try {
  using namespace Korvane::qardatainterfaces;
  if (argc != 4) {
    std::cerr << "usage: transcode SCRIPT ENCODING TIMES\n";
    return 2;
  }
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(std::string("en.") + argv[2]));
  const QARByteArray in(benchmarks::corpus(argv[1], argv[2], benchmarks::MiB));
  QARMetaData meta;
  for (int times = std::atoi(argv[3]); times > 0; --times) {
    QARByteArray out;
    LCPToUTF8Transform().transform(in, out, meta);
  }
} catch (const std::exception& error) {
  std::cerr << "transcode: " << error.what() << '\n';
  return 1;
}
