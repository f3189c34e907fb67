#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <string>

namespace packing {

/// Like `qarread::checkRead`, but throws `std::runtime_error` with the name of the entry for a failure.
void checkEntry(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
                const Korvane::qardatainterfaces::QARMetaData& meta);

/// Like `qarread::deliver`, with its own buffer. Throws `std::runtime_error` with the name of the entry for a
/// failure.
void deliverEntry(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
                  Korvane::qardatainterfaces::QARMetaData& meta,
                  const std::function<void(const void* bytes, std::size_t size)>& take);

}  // namespace packing
