// Makes a directory from an archive: `unpack --help`.

#include "Conversions.hpp"
#include "limitOptions.hpp"
#include "runProgram.hpp"
#include "unpackArchive.hpp"

int main(int argc, char** argv) {
  using namespace packing;
  CLI::App app("Makes a directory from an archive, read through the readers of the library.", "unpack");
  std::string archive, directory;
  Limits limits;
  app.add_option("ARCHIVE", archive)->required();
  app.add_option("DIRECTORY", directory, "One that does not exist yet, or is empty")->required();
  const Conversions conversions(app, Conversions::Direction::fromUtf8);
  addLimitOptions(app, limits);
  return runProgram(app, argc, argv, [&] {
    Korvane::qardatainterfaces::QARFileReaderFactory factory;
    conversions.apply(factory);
    unpackArchive(archive, directory, limits, factory,
                  [](const auto& name, const auto& text) { say("unpack", name + ": " + text); });
  });
}
