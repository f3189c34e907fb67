// Reads files through the library, for a person or a script: `qarread --help`.

#include "../Output.hpp"
#include "../contentLocale.hpp"
#include "../printable.hpp"
#include "../reason.hpp"
#include "../walk.hpp"
#include "Notices.hpp"
#include "Options.hpp"
#include "Progress.hpp"
#include "Source.hpp"

#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARData.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <csignal>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <sstream>
#include <string>

#include <unistd.h>

namespace qarread {
namespace {

using Korvane::rtxi18nutil::DeployedException;
namespace di = Korvane::qardatainterfaces;

/// A transform of the library with an identifier of ours, for the table.
template <class Transform>
class Named final : public Transform {
public:
  explicit Named(const char* id) { this->id_ = id; }
};

void say(const std::string& text) { std::cerr << "qarread: " + text + '\n'; }

struct Row {
  std::string reader = "-", transform = "-", in = "-", out = "-", status = "ok", path;

  std::string text() const {
    std::ostringstream line;
    line << std::left << std::setw(11) << reader << std::setw(13) << transform << std::right << std::setw(11) << in
         << std::setw(12) << out << "  " << std::left << std::setw(6) << status << "  " << path << '\n';
    return line.str();
  }
};

/// One run over the paths of the command line.
class Session {
public:
  explicit Session(const Options& options);

  /// Whether every path has succeeded.
  bool run();

private:
  void visit(const Found& found);
  void deliver(Source& source, Row& row);
  void enter(const Source& source, const Found& found);
  void writeCatalogue();
  void tell(const std::string& path, const std::string& text);
  void fail(const std::string& path, const std::string& text);

  const Options& options_;
  Output output_;
  Notices notices_;
  Progress progress_;
  di::QARFileReaderFactory factory_;
  di::QARData catalogue_;
  std::unique_ptr<unsigned char[]> buffer_;
  bool succeeded_ = true;
};

Session::Session(const Options& options)
    : options_(options),
      // Not between lines of content on the same terminal.
      progress_(options.recursive && ::isatty(STDERR_FILENO) &&
                (options.mode == Mode::catalogue || !::isatty(STDOUT_FILENO))) {
  if (options.locale) setContentLocale(*options.locale);
  for (const auto& [transform, extensions] : options.registrations) {
    if (transform == CodePage::toUtf8)
      factory_.addFileTypeHandler(extensions, new Named<di::LCPToUTF8Transform>("lcp-to-utf8"));
    else
      factory_.addFileTypeHandler(extensions, new Named<di::UTF8ToLCPTransform>("utf8-to-lcp"));
  }
  if (options.mode != Mode::catalogue) buffer_ = std::make_unique_for_overwrite<unsigned char[]>(options.chunk);
}

bool Session::run() {
  if (options_.mode == Mode::stat)
    output_.write(Row{"READER", "TRANSFORM", "BYTES IN", "BYTES OUT", "STATUS", "PATH"}.text());
  for (const auto& path : options_.paths) {
    if (options_.recursive)
      walk(
          path, [this](const Found& found) { visit(found); },
          [this](const std::string& directory, const std::error_code& error) { fail(directory, error.message()); });
    else
      visit(argument(path));
  }
  if (options_.mode == Mode::catalogue) writeCatalogue();
  output_.finish();
  return succeeded_;
}

void Session::visit(const Found& found) {
  Row row;
  row.path = printable(found.path);
  std::optional<std::string> failure;
  try {
    Source source(factory_, found.path, options_.runtime);
    if (options_.mode == Mode::catalogue)
      enter(source, found);
    else
      deliver(source, row);
  } catch (const OutputError&) {
    throw;
  } catch (const DeployedException& error) {
    row.status = error.identifier();
    failure = withReason(error);
  } catch (const ReadFailure& error) {
    row.status = std::to_string(error.status());
    failure = error.what();
  } catch (const std::exception& error) {
    row.status = "error";
    failure = error.what();
  }
  progress_.addPath();
  if (options_.mode == Mode::stat) output_.write(row.text());
  auto notices = notices_.take();
  for (std::string line; std::getline(notices, line);) tell(found.path, line);
  if (failure) fail(found.path, *failure);
}

void Session::deliver(Source& source, Row& row) {
  row.reader = source.reader();
  if (!source.transform().empty()) row.transform = source.transform();
  if (source.size()) row.in = std::to_string(*source.size());
  std::uint64_t delivered = 0;
  source.deliver({buffer_.get(), options_.chunk}, [&](const void* bytes, std::size_t size) {
    if (options_.mode == Mode::content) output_.write(bytes, size);
    delivered += size;
    progress_.addBytes(size);
  });
  row.out = std::to_string(delivered);
}

void Session::enter(const Source& source, const Found& found) {
  const auto entry = di::QARPath::fromNative(found.name.native());
  catalogue_.addFileMapEntry(entry, di::QARPath::fromNative(found.path.native()), false);
  catalogue_.getFileMap()[entry].setUserData(source.reader());
}

void Session::writeCatalogue() {
  progress_.erase();
  for (const auto& [name, record] : catalogue_.getFileMap()) {
    std::ostringstream line;
    line << std::left << std::setw(11) << record.getUserData() << printable(di::QARPath::toNative(name)) << '\n';
    output_.write(line.str());
  }
}

void Session::tell(const std::string& path, const std::string& text) {
  progress_.erase();
  say(printable(path) + ": " + printable(text));
}

void Session::fail(const std::string& path, const std::string& text) {
  tell(path, text);
  succeeded_ = false;
}

int help() {
  Output output;
  output.write(std::string(synopsis) + description);
  output.finish();
  return 0;
}

}  // namespace
}  // namespace qarread

int main(int argc, char** argv) {
  using namespace qarread;
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is an error like any other
  try {
    const auto options = parse(argc, argv);
    if (options.help) return help();
    return Session(options).run() ? 0 : 1;
  } catch (const UsageError& error) {
    say(printable(error.what()));
    std::cerr << synopsis;
    return 2;
  } catch (const std::exception& error) {
    say(error.what());
    return 1;
  }
}
