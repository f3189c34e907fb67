#include "CommandLine.hpp"

#include "../UsageError.hpp"

#include <qardatainterfaces/QARFileReader.hpp>
#include <qardatainterfaces/Version.hpp>

#include <charconv>
#include <memory>
#include <string_view>

namespace qarread {

const char* const CommandLine::usage =
    R"(usage: qarread [-r] [--lcp-to-utf8 EXT,...] [--utf8-to-lcp EXT,...] [--transcode FROM:TO:EXT,...]...
               [--runtime] [--chunk N] [--locale NAME] [--strict]
               [--stat | --check | --catalogue] [--json] [--files0-from FILE] [--stdin-name NAME]
               [-h | --help] [-V | --version] PATH...
)";

namespace {

class Formatter final : public CLI::Formatter {
public:
  std::string make_help(const CLI::App* app, std::string /*name*/, CLI::AppFormatMode mode) const override {
    return CommandLine::usage + make_description(app) + make_groups(app, mode) + make_footer(app);
  }
};

unsigned int parseChunk(std::string_view text) {
  unsigned int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value == 0 ||
      value == Korvane::qardatainterfaces::QARFileReader::failed)
    throw UsageError("--chunk must be from 1 to 4294967294");
  return value;
}

// Refuses "--option=", for which CLI11 would use the next argument as the value, and "--flag=value".
void checkValues(const CLI::App& app, int argc, char** argv) {
  for (int i = 1; i < argc && argv[i] != std::string_view("--"); ++i) {
    const std::string argument = argv[i];
    const auto equals = argument.find('=');
    if (argument.compare(0, 2, "--") != 0 || equals == argument.npos) continue;
    const auto name = argument.substr(0, equals);
    const auto* const option = app.get_option_no_throw(name);
    if (option != nullptr && option->get_items_expected_max() == 0) throw UsageError(name + " takes no value");
    if (equals + 1 == argument.size()) throw UsageError(name + " needs a value");
  }
}

}  // namespace

CommandLine::CommandLine()
    : app_("Writes what the readers of the library deliver for each PATH to standard output. - is standard input.",
           "qarread"),
      conversions_(app_, Conversions::Directions::both) {
  app_.formatter(std::make_shared<Formatter>());
  app_.set_help_flag("-h,--help", "This text");
  app_.set_version_flag("-V,--version", std::string("qarread ") + libzrqardatainterfaces_version, "The version");
  const auto addFlag = [this](const char* name, bool& value, const char* text) {
    app_.add_flag(name, value, text)->disable_flag_override();
  };
  const auto addMode = [this](const char* name, Mode mode, const char* text) {
    app_.add_flag_callback(
            name, [this, mode] { modes_.insert(mode); }, text)
        ->disable_flag_override();
  };
  addFlag("-r", options_.recursive, "Read directories recursively; links are not followed");
  addFlag("--runtime", options_.runtime, "Choose readers by extension only, as at run time: links are followed");
  app_.add_option("--chunk", chunk_, "Read N bytes at a time")->type_name("N");
  addMode("--stat", Mode::stat, "Print reader, transform, bytes in and out, status and path instead of content");
  addMode("--check", Mode::check, "Print what conversions lose, and whether files come back, instead of content");
  addMode("--catalogue", Mode::catalogue,
          "Print the entries of an archive catalogue, in its order, instead of content");
  addFlag("--json", options_.json, "With --stat or --check: print a JSON object for each path");
  app_.add_option("--files0-from", options_.namesFile, "Read the paths from FILE; a zero byte ends each of them")
      ->type_name("FILE");
  app_.add_option("--stdin-name", options_.standardInputName, "Treat standard input as a file of this name")
      ->type_name("NAME");
  app_.footer(
      "\nExit status: 0 on success; 1 if a path or standard output failed, or if --check found losses; 2 if the\n"
      "command line is wrong.");
  for (auto* const option : app_.get_options())
    if (option->get_items_expected_max() == 1) option->take_last();  // CLI11's error would be no sentence
  app_.allow_extras();  // the paths; if they were values of an option, CLI11 would split "[a,b]" into two
}

std::optional<std::string> CommandLine::parse(int argc, char** argv) {
  try {
    checkValues(app_, argc, argv);
    app_.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return app_.help();
  } catch (const CLI::CallForVersion& version) {
    return std::string(version.what()) + '\n';
  } catch (const CLI::ArgumentMismatch&) {
    throw UsageError(std::string(argv[argc - 1]) + " needs a value");
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  checkOptions();
  takePaths();
  takeMode();
  if (!chunk_.empty()) options_.chunk = parseChunk(chunk_);
  return std::nullopt;
}

void CommandLine::checkOptions() const {
  for (const auto* const option : app_.parse_order()) {
    for (const auto& value : option->results())
      if (value.empty()) throw UsageError(option->get_name() + " needs a value");
    if (option->get_items_expected_max() == 1 && option->count() > 1)
      throw UsageError(option->get_name() + " may be given only once");
  }
}

void CommandLine::takePaths() {
  bool isOption = true;
  for (auto& argument : app_.remaining()) {
    if (isOption && argument == "--")
      isOption = false;
    else if (isOption && argument.size() > 1 && argument[0] == '-')
      throw UsageError("unknown option " + argument);
    else
      options_.paths.push_back(std::move(argument));
  }
  if (options_.namesFile && !options_.paths.empty())
    throw UsageError("--files0-from cannot be combined with paths on the command line");
  if (!options_.namesFile && options_.paths.empty()) throw UsageError("a path is missing");
}

void CommandLine::takeMode() {
  if (modes_.size() > 1) throw UsageError("--stat, --check and --catalogue exclude each other");
  if (!modes_.empty()) options_.mode = *modes_.begin();
  if (options_.json && options_.mode != Mode::stat && options_.mode != Mode::check)
    throw UsageError("--json needs --stat or --check");
}

}  // namespace qarread
