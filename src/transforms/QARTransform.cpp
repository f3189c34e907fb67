#include <qardatainterfaces/QARTransform.hpp>

namespace Korvane::qardatainterfaces {

QARTransform::QARTransform() = default;

QARTransform::QARTransform(const char* id, bool allowZeroLengthInputFiles, bool allowZeroLengthOutputFiles)
    : allowZeroLengthInputFiles_(allowZeroLengthInputFiles),
      allowZeroLengthOutputFiles_(allowZeroLengthOutputFiles),
      id_(id) {}

QARTransform::~QARTransform() = default;

bool QARTransform::filter(const QARByteArray& in, QARByteArray& out) {
  out = in;
  return true;
}

bool QARTransform::isSetup() const { return isSetup_; }
bool QARTransform::allowZeroLengthInputFiles() const { return allowZeroLengthInputFiles_; }
bool QARTransform::allowZeroLengthOutputFiles() const { return allowZeroLengthOutputFiles_; }
const char* QARTransform::getId() { return id_.c_str(); }

}  // namespace Korvane::qardatainterfaces
