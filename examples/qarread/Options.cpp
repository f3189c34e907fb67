#include "Options.hpp"

#include "../extensions.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <charconv>
#include <string_view>

#include <getopt.h>

namespace qarread {

const char* const synopsis =
    R"(usage: qarread [-r] [--lcp-to-utf8 EXT,...] [--utf8-to-lcp EXT,...] [--runtime] [--chunk N]
               [--locale NAME] [--stat | --catalogue] PATH...
)";

const char* const description =
    R"(
Writes what the readers of the library deliver for each PATH to standard output.

  -r                      also read what is below directories; links are not followed
  --lcp-to-utf8 EXT,...   convert files with these extensions from the local code page to UTF-8
  --utf8-to-lcp EXT,...   convert files with these extensions from UTF-8 to the local code page
  --runtime               choose readers by extension alone, as at run time: links are followed
  --chunk N               read N bytes at a time
  --locale NAME           locale of messages and of the local code page, for example de_DE.ISO-8859-1
  --stat                  instead of content: reader, transform, bytes in and out, status and path
  --catalogue             instead of content: the entries of an archive catalogue, in its order
  --help                  this text

Exit status: 0, 1 if a path or standard output failed, 2 if the command line is wrong.
)";

namespace {

enum Code : int { lcpToUtf8 = 256, utf8ToLcp, runtime, chunk, locale, stat, catalogue, help };

constexpr ::option long_options[] = {
    {"lcp-to-utf8", required_argument, nullptr, lcpToUtf8},
    {"utf8-to-lcp", required_argument, nullptr, utf8ToLcp},
    {"runtime", no_argument, nullptr, runtime},
    {"chunk", required_argument, nullptr, chunk},
    {"locale", required_argument, nullptr, locale},
    {"stat", no_argument, nullptr, stat},
    {"catalogue", no_argument, nullptr, catalogue},
    {"help", no_argument, nullptr, help},
    {nullptr, 0, nullptr, 0},
};

unsigned int parseChunk(std::string_view text) {
  unsigned int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value == 0 ||
      value == Korvane::qardatainterfaces::QARFileReader::failed)
    throw UsageError("a chunk has 1 to 4294967294 bytes");
  return value;
}

void setMode(Options& options, Mode mode) {
  if (options.mode != Mode::content && options.mode != mode)
    throw UsageError("--stat and --catalogue exclude each other");
  options.mode = mode;
}

}  // namespace

Options parse(int argc, char** argv) {
  Options options;
  ::opterr = 0;
  while (true) {
    switch (::getopt_long(argc, argv, ":r", long_options, nullptr)) {
      case 'r': options.recursive = true; break;
      case lcpToUtf8: options.registrations.push_back({CodePage::toUtf8, parseExtensions(::optarg)}); break;
      case utf8ToLcp: options.registrations.push_back({CodePage::fromUtf8, parseExtensions(::optarg)}); break;
      case runtime: options.runtime = true; break;
      case chunk: options.chunk = parseChunk(::optarg); break;
      case locale: options.locale = ::optarg; break;
      case stat: setMode(options, Mode::stat); break;
      case catalogue: setMode(options, Mode::catalogue); break;
      case help: options.help = true; return options;
      case ':': throw UsageError(argv[::optind - 1] + std::string(" needs a value"));
      case -1:
        options.paths.assign(argv + ::optind, argv + argc);
        if (options.paths.empty()) throw UsageError("a path is missing");
        return options;
      default:
        if (::optopt != 0 && ::optopt < lcpToUtf8)
          throw UsageError(std::string("unknown option -") += static_cast<char>(::optopt));
        throw UsageError(std::string("unknown option ") + argv[::optind - 1]);
    }
  }
}

}  // namespace qarread
