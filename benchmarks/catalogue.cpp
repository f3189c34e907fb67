#include "Report.hpp"

#include <qardatainterfaces/QARData.hpp>

#include <map>
#include <memory>
#include <random>
#include <vector>

namespace benchmarks {
namespace {

using namespace Korvane::qardatainterfaces;
using Map = std::map<std::u16string, QARRecordData>;

/// A million names in the order of a directory walk; some are repeated.
std::vector<std::u16string> names() {
  std::mt19937 random;
  std::vector<std::u16string> result;
  for (std::size_t i = 0; i < 1'000'000; ++i) {
    const auto name = std::to_string(10'000 + i / 100) + "/resource" + std::to_string(random() % 300) + ".txt";
    result.emplace_back(name.begin(), name.end());
  }
  return result;
}

void deliver(const Map& map, std::string* result) {
  if (result == nullptr) return;
  for (const auto& [name, record] : map)
    for (const auto unit : name + record.getName() + (record.isDemo() ? u"!\n" : u"\n"))
      *result += static_cast<char>(unit);
}

Contest setting_entries() {
  const auto entries = std::make_shared<const std::vector<std::u16string>>(names());
  const std::u16string record = u"record";
  const auto ours = [=](std::string* result) {
    QARData data;
    for (const auto& name : *entries) data.addFileMapEntry(name, record, false);
    deliver(data.getFileMap(), result);
  };
  const auto map = [=](std::string* result) {
    Map entry_map;
    for (const auto& name : *entries) entry_map.insert_or_assign(name, QARRecordData(record, false, ""));
    deliver(entry_map, result);
  };
  return {entries->size(), {{"ours", ours}, {"insert_or_assign", map, {.time_at_most = 1.03}}}};
}

}  // namespace

void run_catalogue(Report& report) { report.contest("catalogue, a million entries set", setting_entries); }

}  // namespace benchmarks
