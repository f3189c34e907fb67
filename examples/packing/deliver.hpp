#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <string>

namespace packing {

/// Throws `std::runtime_error` with `name` if the last read of `reader` has failed.
void checkRead(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name);

/// Hands what `reader` delivers to `take`, piece by piece. Throws what `checkRead`, the reader and `take` throw.
void deliver(Korvane::qardatainterfaces::QARFileReader& reader, const std::string& name,
             Korvane::qardatainterfaces::QARMetaData& meta,
             const std::function<void(const void* bytes, std::size_t size)>& take);

}  // namespace packing
