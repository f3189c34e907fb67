#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include "transcode.hpp"

namespace Korvane::qardatainterfaces {

UTF8ToLCPTransform::UTF8ToLCPTransform() = default;
UTF8ToLCPTransform::~UTF8ToLCPTransform() = default;

bool UTF8ToLCPTransform::cleanup() { return true; }

bool UTF8ToLCPTransform::transform(const QARByteArray& in, QARByteArray& out, QARMetaData&) {
  transcode(in, out, "UTF-8", "", announce);
  return true;
}

}  // namespace Korvane::qardatainterfaces
