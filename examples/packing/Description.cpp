#include "Description.hpp"

#include "entryNames.hpp"

#include <nlohmann/json.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <stdexcept>

namespace packing {
namespace {

using Korvane::qardatainterfaces::QARPath;
using nlohmann::json;

constexpr unsigned format = 1;
constexpr int deepest = 4;  // the nesting of a text that is not UTF-8, which is an object

bool isUtf8(const std::string& text) try {
  if (std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) return true;
  static_cast<void>(json(text).dump());
  return true;
} catch (const json::type_error&) {
  return false;
}

/// JSON text is UTF-8. Other bytes become an object: {"hex": "FF00"}.
json fromText(std::string text) {
  if (isUtf8(text)) return text;
  std::string digits(2 * text.size(), '0');
  for (std::size_t i = 0; i < text.size(); ++i)
    std::snprintf(&digits[2 * i], 3, "%02X", static_cast<unsigned char>(text[i]));
  return {{"hex", std::move(digits)}};
}

std::string toText(const json& value) {
  if (value.is_string()) return value.get_ref<const std::string&>();
  const auto& digits = value.at("hex").get_ref<const std::string&>();
  std::string text(digits.size() / 2, '\0');
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    unsigned char byte = 0;
    if (std::from_chars(&digits[i], digits.data() + std::min(i + 2, digits.size()), byte, 16).ptr != &digits[i] + 2)
      throw BadArchive("the description has digits that are none");
    text[i / 2] = static_cast<char>(byte);
  }
  return text;
}

json fromName(const std::u16string& name) { return fromText(QARPath::toNative(name)); }
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
  all["version"] = fromText(context.getVersionInfo());
  auto& entries = all["entries"] = json::array();
  for (const auto& [entry, record] : catalogue.getFileMap()) {
    const auto native = QARPath::toNative(entry);
    const auto& fingerprint = fingerprints.at(native);
    auto& object = entries.emplace_back();
    object["name"] = fromText(native);
    object["record"] = fromName(record.getName());
    object["demo"] = record.isDemo();
    object["userData"] = fromText(record.getUserData());
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
    if (crc > UINT32_MAX) throw BadArchive(native + ": the description has a checksum that is none");
    if (!result.fingerprints.emplace(native, Fingerprint(toNumber(entry.at("size")), static_cast<std::uint32_t>(crc)))
             .second)
      throw BadArchive(native + ": the description has it twice");
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
