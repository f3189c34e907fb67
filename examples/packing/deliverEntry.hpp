#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <string>

namespace packing {

/// As `qarread::checkRead`; the failure is told with the name of the entry.
void checkEntry(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
                const Korvane::qardatainterfaces::QARMetaData& meta);

/// As `qarread::deliver`, with a buffer of its own; the failure is told with the name of the entry.
void deliverEntry(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
                  Korvane::qardatainterfaces::QARMetaData& meta,
                  const std::function<void(const void* bytes, std::size_t size)>& take);

}  // namespace packing
