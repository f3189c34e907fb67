#include <qardatainterfaces/QARData.hpp>

#include <utility>

namespace Korvane::qardatainterfaces {
namespace {

// Nothing can fail once the entry exists. A single search finds the entry or the place for a new one.
template <class Value>
std::size_t set(std::map<std::u16string, Value>& map, const std::u16string& key, Value value) {
  map.insert_or_assign(key, std::move(value));
  return map.size();
}

std::uint64_t append(std::vector<std::u16string>& paths, const std::u16string& path) {
  paths.push_back(path);
  return paths.size();
}

}  // namespace

QARData::QARData() = default;
QARData::QARData(const QARData&) = default;
QARData::~QARData() = default;

QARData& QARData::operator=(const QARData& other) {
  QARData copy(other);
  fileMap_.swap(copy.fileMap_);
  rootMacroMap_.swap(copy.rootMacroMap_);
  tarvoPathVector_.swap(copy.tarvoPathVector_);
  classPathVector_.swap(copy.classPathVector_);
  return *this;
}

std::map<std::u16string, QARRecordData>& QARData::getFileMap() { return fileMap_; }
std::map<std::u16string, std::u16string>& QARData::getRootMacroMap() { return rootMacroMap_; }
std::vector<std::u16string>& QARData::getTarvoPathVector() { return tarvoPathVector_; }
std::vector<std::u16string>& QARData::getClassPathVector() { return classPathVector_; }

bool QARData::existEntry(const std::u16string& entryName) { return fileMap_.find(entryName) != fileMap_.end(); }

std::uint64_t QARData::addTarvoPathEntry(const std::u16string& path) { return append(tarvoPathVector_, path); }
std::uint64_t QARData::addClassPathEntry(const std::u16string& path) { return append(classPathVector_, path); }

std::uint32_t QARData::addFileMapEntry(const std::u16string& entryName, const std::u16string& recordName, bool demo) {
  return static_cast<std::uint32_t>(set(fileMap_, entryName, QARRecordData(recordName, demo, "")));
}

std::uint32_t QARData::replaceFileMapEntry(const std::u16string& oldEntryName, const std::u16string& newEntryName,
                                           const std::u16string& recordName) {
  // The arguments may refer into the node of the old entry, so the node is destroyed last.
  const auto removed = fileMap_.extract(oldEntryName);
  return addFileMapEntry(newEntryName, recordName, false);
}

std::uint64_t QARData::addRootMacroMapEntry(const std::u16string& macroName, const std::u16string& value) {
  return set(rootMacroMap_, macroName, value);
}

}  // namespace Korvane::qardatainterfaces
