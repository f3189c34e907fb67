// Lists the content of an archive: see `list --help`.

#include "../Output.hpp"
#include "../printable.hpp"
#include "deliverEntry.hpp"
#include "limitOptions.hpp"
#include "readArchive.hpp"
#include "runProgram.hpp"

#include <qardatainterfaces/QARPath.hpp>

#include <iomanip>
#include <sstream>
#include <vector>

namespace packing {
namespace {

using Korvane::qardatainterfaces::QARPath;
using qarread::printable;

struct Row {
  std::string kind, size, name, target;
};

/// Reads all content to detect damage.
class ToRows final : public EntryConsumer {
public:
  explicit ToRows(std::vector<Row>& rows) : rows_(rows) {}

  void directory(const std::string& name) override { rows_.push_back({"directory", "-", name + '/', ""}); }
  void file(const std::string& name, bool executable, Korvane::qardatainterfaces::QARFileReader& reader) override {
    std::uint64_t total = 0;
    Korvane::qardatainterfaces::QARMetaData meta;
    deliverEntry(reader, name, meta, [&](const void*, std::size_t size) { total += size; });
    rows_.push_back({executable ? "program" : "file", std::to_string(total), name, ""});
  }
  void link(const std::string& name, const std::string& target) override {
    rows_.push_back({"link", "-", name, target});
  }
  void hardLink(const std::string& name, const std::string& target) override {
    rows_.push_back({"hard link", "-", name, target});
  }

private:
  std::vector<Row>& rows_;
};

std::string text(const Row& row, const std::string& demo, const std::string& userData) {
  std::ostringstream line;
  line << std::left << std::setw(9) << row.kind << ' ' << std::right << std::setw(11) << row.size << "  " << std::left
       << std::setw(4) << demo << "  " << std::setw(11) << userData << "  " << printable(row.name);
  if (!row.target.empty()) line << " -> " << printable(row.target);
  line << '\n';
  return line.str();
}

std::string text(const Row& row, std::optional<Description>& description) {
  if (!description) return text(row, "-", "-");
  const auto& entries = description->catalogue.getFileMap();
  const auto entry = entries.find(QARPath::fromNative(row.name));
  if (entry == entries.end()) return text(row, "-", "-");
  const auto userData = entry->second.getUserData();
  return text(row, entry->second.isDemo() ? "demo" : "-", userData.empty() ? "-" : printable(userData));
}

std::string text(Description& description) {
  std::string lines = "version     " + printable(description.context.getVersionInfo()) + '\n';
  const auto add = [&](const char* heading, const std::string& value) { lines += heading + printable(value) + '\n'; };
  for (const auto& [name, value] : description.catalogue.getRootMacroMap())
    add("macro       ", QARPath::toNative(name) + '=' + QARPath::toNative(value));
  for (const auto& path : description.catalogue.getTarvoPathVector()) add("tarvo path  ", QARPath::toNative(path));
  for (const auto& path : description.catalogue.getClassPathVector()) add("class path  ", QARPath::toNative(path));
  return lines;
}

void list(const std::string& archive, const Limits& limits) {
  std::vector<Row> rows;
  ToRows consumer(rows);
  Korvane::qardatainterfaces::QARFileReaderFactory factory;
  auto description = readArchive(archive, limits, factory, consumer);
  qarread::Output output;
  output.write(text({"KIND", "BYTES", "NAME", ""}, "DEMO", "USER DATA"));
  for (const auto& row : rows) output.write(text(row, description));
  if (description) output.write(text(*description));
  output.finish();
}

class List {
public:
  explicit List(CLI::App& app) {
    app.add_option("ARCHIVE", archive_)->required();
    addLimitOptions(app, limits_);
  }

  void run() { list(archive_, limits_); }

private:
  std::string archive_;
  Limits limits_;
};

}  // namespace
}  // namespace packing

int main(int argc, char** argv) {
  return packing::runProgram<packing::List>(
      "Lists the content of an archive. Reads all of it, so that damage is found.", "list", argc, argv);
}
