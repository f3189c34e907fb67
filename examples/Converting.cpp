#include "Converting.hpp"

namespace qarread {

namespace di = Korvane::qardatainterfaces;

bool Converting::transform(const di::QARByteArray& in, di::QARByteArray& out, di::QARMetaData& meta) {
  meta.setUserData(id_);
  return QARCodePageTransform::transform(in, out, meta);
}

void Converting::lost(const di::QARConversionLoss& loss, di::QARMetaData& meta) {
  std::string report = id_ + ": " + std::to_string(loss.malformed) + " malformed, " +
                       std::to_string(loss.unmappable) + " not in the code page";
  if (!loss.places.empty()) report += ", first at byte " + std::to_string(loss.places.front().offset);
  meta.setUserData(report);
}

}  // namespace qarread
