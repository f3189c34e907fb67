// transcode SCRIPT ENCODING TIMES: converts the same mebibyte to UTF-8 that often, for tools that count instructions.

#include "corpora.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
  using namespace Korvane::qardatainterfaces;
  if (argc != 4) {
    std::cerr << "usage: transcode SCRIPT ENCODING TIMES\n";
    return 2;
  }
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(std::string("en.") + argv[2]));
  const QARByteArray in(benchmarks::corpus(argv[1], argv[2], benchmarks::MiB));
  LCPToUTF8Transform transform;
  QARMetaData meta;
  for (int times = std::atoi(argv[3]); times > 0; --times) {
    QARByteArray out;
    transform.transform(in, out, meta);
    if (out.size() < in.size()) return 1;
  }
}
