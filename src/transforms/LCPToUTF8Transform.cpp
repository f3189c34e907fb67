#include <qardatainterfaces/LCPToUTF8Transform.hpp>

#include "transcode.hpp"

namespace Korvane::qardatainterfaces {

LCPToUTF8Transform::LCPToUTF8Transform() = default;
LCPToUTF8Transform::~LCPToUTF8Transform() = default;

bool LCPToUTF8Transform::cleanup() { return true; }

bool LCPToUTF8Transform::transform(const QARByteArray& in, QARByteArray& out, QARMetaData&) {
  transcode(in, out, "", "UTF-8", announce);
  return true;
}

}  // namespace Korvane::qardatainterfaces
