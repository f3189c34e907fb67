#include "Description.hpp"

#include "../jsonText.hpp"
#include "entryNames.hpp"

#include <qardatainterfaces/QARPath.hpp>

#include <stdexcept>

namespace packing {
namespace {

using Korvane::qardatainterfaces::QARPath;
using nlohmann::json;
using qarread::toJsonText;

constexpr unsigned format = 1;
constexpr int deepest = 4;  // the nesting of a text that is not UTF-8, which is an object

std::string toText(const json& value) try {
  return qarread::fromJsonText(value);
} catch (const std::invalid_argument&) {
  throw BadArchive("the description has an invalid hexadecimal text");
}

json fromName(const std::u16string& name) { return toJsonText(QARPath::toNative(name)); }
std::u16string toName(const json& value) { return QARPath::fromNative(toText(value)); }

/// Unlike `get`, these functions convert nothing: a value of another type is an error.
bool toFlag(const json& value) { return value.get_ref<const json::boolean_t&>(); }
std::uint64_t toNumber(const json& value) { return value.get_ref<const json::number_unsigned_t&>(); }
const json::array_t& toList(const json& value) { return value.get_ref<const json::array_t&>(); }

json parse(const std::string& text) {
  return json::parse(text, [](int depth, json::parse_event_t, json&) {
    if (depth > deepest) throw BadArchive("the description is nested too deeply");
    return true;
  });
}

}  // namespace

// Values are added one by one, since an initialiser list would copy them.
std::string Description::toJson() {
  json all;
  all["format"] = format;
  all["version"] = toJsonText(context.getVersionInfo());
  auto& entries = all["entries"] = json::array();
  for (const auto& [entry, record] : catalogue.getFileMap()) {
    const auto native = QARPath::toNative(entry);
    const auto& fingerprint = fingerprints.at(native);
    auto& object = entries.emplace_back();
    object["name"] = toJsonText(native);
    object["record"] = fromName(record.getName());
    object["demo"] = record.isDemo();
    object["userData"] = toJsonText(record.getUserData());
    object["size"] = fingerprint.size();
    object["crc32"] = fingerprint.crc();
  }
  auto& macros = all["rootMacros"] = json::array();
  for (const auto& [macro, value] : catalogue.getRootMacroMap())
    macros.push_back({{"name", fromName(macro)}, {"value", fromName(value)}});
  auto& tarvoPath = all["tarvoPath"] = json::array();
  for (const auto& path : catalogue.getTarvoPathVector()) tarvoPath.push_back(fromName(path));
  auto& classPath = all["classPath"] = json::array();
  for (const auto& path : catalogue.getClassPathVector()) classPath.push_back(fromName(path));
  auto text = all.dump(1) + '\n';
  if (text.size() > most) throw std::length_error("the description of the archive is too large");
  return text;
}

Description Description::fromJson(const std::string& text) try {
  const auto all = parse(text);
  if (toNumber(all.at("format")) != format) throw BadArchive("the description has an unknown format");
  Description result;
  const auto version = toText(all.at("version"));
  if (version.find('\0') != version.npos) throw BadArchive("the description has a version with a zero byte");
  result.context.setVersionInfo(version.c_str());
  for (const auto& entry : toList(all.at("entries"))) {
    const auto native = toText(entry.at("name"));
    const auto crc = toNumber(entry.at("crc32"));
    if (crc > UINT32_MAX) throw BadArchive(native + ": the checksum in the description is too large");
    if (!result.fingerprints.emplace(native, Fingerprint(toNumber(entry.at("size")), static_cast<std::uint32_t>(crc)))
             .second)
      throw BadArchive(native + ": occurs twice in the description");
    const auto key = QARPath::fromNative(native);
    result.catalogue.addFileMapEntry(key, toName(entry.at("record")), toFlag(entry.at("demo")));
    result.catalogue.getFileMap()[key].setUserData(toText(entry.at("userData")));
  }
  for (const auto& macro : toList(all.at("rootMacros")))
    result.catalogue.addRootMacroMapEntry(toName(macro.at("name")), toName(macro.at("value")));
  for (const auto& path : toList(all.at("tarvoPath"))) result.catalogue.addTarvoPathEntry(toName(path));
  for (const auto& path : toList(all.at("classPath"))) result.catalogue.addClassPathEntry(toName(path));
  return result;
} catch (const json::exception& error) {
  throw BadArchive(std::string("the description cannot be read: ") + error.what());
}

}  // namespace packing
