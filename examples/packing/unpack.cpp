// Unpacks an archive into a directory: see `unpack --help`.

#include "../Conversions.hpp"
#include "limitOptions.hpp"
#include "runProgram.hpp"
#include "unpackArchive.hpp"

#include <optional>
#include <string>

namespace packing {
namespace {

class Unpack {
public:
  explicit Unpack(CLI::App& app) {
    app.add_option("ARCHIVE", archive_)->required();
    app.add_option("DIRECTORY", directory_, "A directory that does not exist yet or is empty")->required();
    conversions_.emplace(app, qarread::Conversions::Directions::fromUtf8);
    addLimitOptions(app, limits_);
  }

  void run() {
    Korvane::qardatainterfaces::QARFileReaderFactory factory;
    conversions_->apply(factory);
    unpackArchive(archive_, directory_, limits_, factory,
                  [](const auto& name, const auto& text) { say("unpack", name + ": " + text); });
  }

private:
  std::string archive_, directory_;
  std::optional<qarread::Conversions> conversions_;
  Limits limits_;
};

}  // namespace
}  // namespace packing

int main(int argc, char** argv) {
  return packing::runProgram<packing::Unpack>(
      "Unpacks an archive into a directory. Reads each file through a reader of the library.", "unpack", argc, argv);
}
