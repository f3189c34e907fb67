#include "Session.hpp"

#include "../Converting.hpp"
#include "../UsageError.hpp"
#include "../deliver.hpp"
#include "../printable.hpp"
#include "eachName.hpp"
#include "failure.hpp"

#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace qarread {
namespace {

namespace di = Korvane::qardatainterfaces;

constexpr const char* standardInput = "-";

/// A transform of the library with another identifier.
template <class Transform>
class Named final : public Transform {
public:
  explicit Named(const char* id) { this->id_ = id; }
};

bool isSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

/// Whether standard error is a terminal that understands escape sequences.
bool canErase() {
  return ::isatty(STDERR_FILENO) && isSet("TERM") && std::getenv("TERM") != std::string_view("dumb") &&
         !isSet("NO_COLOR");
}

/// Progress is not shown if it would mix with output on the same terminal.
bool wantsProgress(const Options& options) {
  return (options.recursive || options.namesFile) && canErase() &&
         (options.mode == Mode::catalogue || !::isatty(STDOUT_FILENO));
}

}  // namespace

Session::Session(const Options& options, const Conversions& conversions)
    : options_(options), progress_(wantsProgress(options)) {
  conversions.apply(factory_, [&](const char* id, const std::string& from, const std::string& to) {
    transformWidth_ = std::max(transformWidth_, std::string_view(id).size());
    return makeTransform(id, from, to, conversions.areStrict());
  });
  presentation_ = makePresentation(options, transformWidth_, output_);
  if (presentation_->wantsContent()) buffer_ = std::make_unique_for_overwrite<unsigned char[]>(options.chunk);
}

// Between the local code page and UTF-8, uses the library's two local transforms unless --check or --strict needs
// more.
di::QARTransform* Session::makeTransform(const char* id, const std::string& from, const std::string& to,
                                         bool isStrict) {
  if (options_.mode == Mode::check) return new Checking(id, from, to, findings_);
  if (isStrict) return new Converting(id, from, to, Converting::OnLoss::fail);
  if (from.empty()) return new Named<di::LCPToUTF8Transform>(id);
  if (to.empty()) return new Named<di::UTF8ToLCPTransform>(id);
  return new Converting(id, from, to);
}

bool Session::run() {
  presentation_->begin();
  if (options_.namesFile) eachName(*options_.namesFile, [this](const std::string& name) { readArgument(name); });
  for (const auto& path : options_.paths) readArgument(path);
  progress_.erase();
  presentation_->end();
  if (options_.mode == Mode::check && !options_.json && succeeded_ && !converted_)
    say("nothing is converted, so nothing is lost");
  output_.finish();
  return succeeded_;
}

void Session::readArgument(const std::string& path) {
  if (path == standardInput && options_.namesFile == standardInput)
    failWithRecord(path, "standard input is already read by --files0-from");
  else if (path == standardInput)
    read({standardInput, options_.standardInputName});
  else if (options_.recursive)
    walk(
        path, [this](const Found& found) { read(found); },
        [this](const std::string& directory, const std::error_code& error) {
          failWithRecord(directory, "cannot be listed (" + error.message() + ')');
        });
  else
    read(argument(path));
}

void Session::read(const Found& found) {
  const std::string path = found.path == standardInput ? found.name : found.path;
  Record record;
  record.path = path;
  std::optional<Failure> failure;
  try {
    auto source = open(found);
    record.reader = source.reader();
    record.transform = source.transform();
    record.in = source.size();
    if (presentation_->wantsContent()) deliver(source, path, record);
  } catch (const OutputError&) {
    throw;
  } catch (...) {
    failure = currentFailure();
    record.status = failure->status;
  }
  progress_.addPath();
  presentation_->show(found, record);
  auto notices = notices_.take();
  for (std::string line; std::getline(notices, line);) tell(path, line);
  if (failure) fail(path, failure->text);
  if (record.findings) converted_ = true;
  if (record.findings && record.findings->losses() > 0) succeeded_ = false;
}

Source Session::open(const Found& found) {
  if (found.path == standardInput) return Source::standardInput(factory_, options_.standardInputName);
  return Source::path(factory_, found.path, options_.runtime);
}

void Session::deliver(Source& source, const std::string& path, Record& record) {
  std::uint64_t delivered = 0;
  findings_.reset();
  if (options_.mode == Mode::check && source.convertsPath())
    throw ReadFailure("error", "cannot be checked, since its path is converted instead of its content");
  if (!record.transform.empty()) findings_.emplace();  // for an empty file, whose content no transform receives
  const auto loss = source.deliver({buffer_.get(), options_.chunk}, [&](const void* bytes, std::size_t size) {
    presentation_->take(bytes, size);
    delivered += size;
    progress_.addBytes(size);
  });
  record.in = source.size();
  record.out = delivered;
  record.findings = std::exchange(findings_, {});
  if (!loss.empty()) tell(path, loss);
}

void Session::tell(const std::string& path, const std::string& text) {
  progress_.erase();
  say(path + ": " + text);
}

void Session::failWithRecord(const std::string& path, const std::string& text) {
  Record record;
  record.path = path;
  record.status = "error";
  presentation_->show(argument(path), record);
  fail(path, text);
}

void Session::fail(const std::string& path, const std::string& text) {
  tell(path, text);
  succeeded_ = false;
}

void say(const std::string& text) { std::cerr << "qarread: " + printable(text) + '\n'; }

}  // namespace qarread
