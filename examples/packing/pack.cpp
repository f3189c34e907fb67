// Packs a directory into an archive: see `pack --help`.

#include "../Conversions.hpp"
#include "../UsageError.hpp"
#include "packDirectory.hpp"
#include "runProgram.hpp"

#include <qardatainterfaces/QARPath.hpp>

#include <charconv>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace packing {
namespace {

using Korvane::qardatainterfaces::QARPath;

/// The time of every entry, from SOURCE_DATE_EPOCH as usual in reproducible builds; 1970 without it.
std::time_t sourceDate() {
  const char* const text = std::getenv("SOURCE_DATE_EPOCH");
  if (text == nullptr) return 0;
  const std::string_view digits = text;
  std::time_t time = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
  if (error != std::errc() || end != digits.data() + digits.size() || time < 0)
    throw qarread::UsageError("SOURCE_DATE_EPOCH is '" + std::string(digits) + "', which is not a number of seconds");
  return time;
}

void addMacro(const std::string& definition, Description& description) {
  const auto equals = definition.find('=');
  if (equals == 0 || equals == definition.npos) throw qarread::UsageError("'" + definition + "' is not NAME=VALUE");
  description.catalogue.addRootMacroMapEntry(QARPath::fromNative(definition.substr(0, equals)),
                                             QARPath::fromNative(definition.substr(equals + 1)));
}

class Pack {
public:
  explicit Pack(CLI::App& app) {
    app.add_option("DIRECTORY", directory_)->required();
    app.add_option("ARCHIVE", archive_, "A name that ends with .tar, .tar.gz or .tar.zst")->required();
    conversions_.emplace(app, qarread::Conversions::Directions::toUtf8);
    app.add_flag("--demo", options_.demo, "Set the demo flag of every entry");
    app.add_option("--macro", macros_, "Define a root macro")->type_name("NAME=VALUE")->allow_extra_args(false);
    app.footer("The time of every entry is SOURCE_DATE_EPOCH, or the start of 1970 if that is not set.");
  }

  void run() {
    Korvane::qardatainterfaces::QARFileReaderFactory factory;
    conversions_->apply(factory);
    options_.time = sourceDate();
    Description description;
    for (const auto& macro : macros_) addMacro(macro, description);
    packDirectory(directory_, archive_, options_, factory, description,
                  [](const auto& name, const auto& text) { say("pack", name + ": " + text); });
  }

private:
  std::string directory_, archive_;
  std::optional<qarread::Conversions> conversions_;
  std::vector<std::string> macros_;
  PackOptions options_;
};

}  // namespace
}  // namespace packing

int main(int argc, char** argv) {
  return packing::runProgram<packing::Pack>(
      "Packs a directory into an archive. Reads each file through a reader of the library.", "pack", argc, argv);
}
