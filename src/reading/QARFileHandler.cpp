#include "QARFileHandler.hpp"

#include "input/FilePath.hpp"

#include <qardatainterfaces/QARTransform.hpp>

#include <algorithm>
#include <utility>

namespace Korvane::qardatainterfaces {

QARFileHandler::QARFileHandler(const std::vector<std::u16string>& extensions,
                               boost::shared_ptr<QARTransform> transform)
    : extensions_(extensions), transform_(std::move(transform)) {}

QARTransform* QARFileHandler::getTransform(const FilePath& path) const {
  const auto extension = path.extension();
  const bool handled =
      !extension.empty() && std::find(extensions_.begin(), extensions_.end(), extension) != extensions_.end();
  return handled ? transform_.get() : nullptr;
}

}  // namespace Korvane::qardatainterfaces
