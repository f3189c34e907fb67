#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace Korvane::qardatainterfaces {

class FilePath;
class QARTransform;

/// One registration: a transform and the extensions of the files that it applies to.
class QARFileHandler {
public:
  QARFileHandler(const std::vector<std::u16string>& extensions, boost::shared_ptr<QARTransform> transform);

  /// The transform if the path has one of the extensions, else null.
  QARTransform* getTransform(const FilePath& path) const;

private:
  std::vector<std::u16string> extensions_;
  boost::shared_ptr<QARTransform> transform_;
};

}  // namespace Korvane::qardatainterfaces
