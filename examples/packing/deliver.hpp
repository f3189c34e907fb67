#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <string>

namespace packing {

/// Throws `std::runtime_error` with `name` if the last read of `reader`, which used `meta`, has failed.
void checkRead(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
               const Korvane::qardatainterfaces::QARMetaData& meta);

/// The report of a successful conversion about its losses; empty if there were none.
std::string lossOf(Korvane::qardatainterfaces::QARFileReader& reader,
                   const Korvane::qardatainterfaces::QARMetaData& meta);

/// Passes the content of `reader` to `take` in chunks. Throws what `checkRead`, the reader and `take` throw.
void deliver(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
             Korvane::qardatainterfaces::QARMetaData& meta,
             const std::function<void(const void* bytes, std::size_t size)>& take);

}  // namespace packing
