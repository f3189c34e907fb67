// transcode local|named FROM TO SCRIPT TIMES: converts the same mebibyte TIMES times, for tools that count
// instructions. One of the encodings is UTF-8. `local` does it by the transforms of the local code page, which is the
// other encoding, `named` by QARCodePageTransform.

#include "corpora.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace Korvane::qardatainterfaces;

std::unique_ptr<QARTransform> make_transform(bool named, const std::string& from, const std::string& to) {
  if (named) return std::make_unique<QARCodePageTransform>("named", from, to);
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("en." + (to == "UTF-8" ? from : to)));
  if (to == "UTF-8") return std::make_unique<LCPToUTF8Transform>();
  return std::make_unique<UTF8ToLCPTransform>();
}

}  // namespace

int main(int argc, char** argv) try {
  const std::string way = argc == 6 ? argv[1] : "";
  if (way != "local" && way != "named") {
    std::cerr << "usage: transcode local|named FROM TO SCRIPT TIMES\n";
    return 2;
  }
  const auto transform = make_transform(way == "named", argv[2], argv[3]);
  const QARByteArray in(benchmarks::corpus(argv[4], argv[2], benchmarks::MiB));
  QARMetaData meta;
  for (int times = std::atoi(argv[5]); times > 0; --times) {
    QARByteArray out;
    transform->transform(in, out, meta);
  }
} catch (const std::exception& error) {
  std::cerr << "transcode: " << error.what() << '\n';
  return 1;
}
