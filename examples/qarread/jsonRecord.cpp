#include "jsonRecord.hpp"

#include "../jsonText.hpp"
#include "codePoint.hpp"

namespace qarread {
namespace {

using json = nlohmann::ordered_json;

template <class Value>
json orNull(const std::optional<Value>& value) {
  return value ? json(*value) : json();
}

json textOrNull(const std::string& text) { return text.empty() ? json() : json(toJsonText(text)); }

json toJson(const LossAt& loss) {
  json object;
  object["offset"] = loss.place.offset;
  object["length"] = loss.place.length;
  object["line"] = loss.position.line;
  object["column"] = loss.position.column;
  object["character"] = codePoint(loss.place.character);
  object["malformed"] = loss.place.malformed;
  return object;
}

// A file that was read and not converted counts as reversible.
void addFindings(json& object, const Findings& findings) {
  object["reversible"] = findings.isReversible;
  auto& losses = object["losses"];
  losses["malformed"] = findings.malformed;
  losses["unmappable"] = findings.unmappable;
  auto& places = losses["places"] = json::array();
  for (const auto& loss : findings.first) places.push_back(toJson(loss));
}

}  // namespace

std::string jsonRecord(const Record& record, bool withLosses) {
  json object;
  object["path"] = toJsonText(record.path);
  object["reader"] = textOrNull(record.reader);
  object["transform"] = textOrNull(record.transform);
  object["in"] = orNull(record.in);
  object["out"] = orNull(record.out);
  object["status"] = record.status;
  if (withLosses && record.hasSucceeded()) {
    addFindings(object, record.findings.value_or(Findings()));
  } else if (withLosses) {
    object["reversible"] = nullptr;
    object["losses"] = nullptr;
  }
  return object.dump();
}

}  // namespace qarread
