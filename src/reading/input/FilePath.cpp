#include "FilePath.hpp"

#include <qardatainterfaces/QARPath.hpp>

namespace Korvane::qardatainterfaces {
namespace {

// For a path that ends with a separator: whether it is a root, "/", "//", ..., or "//name/".
bool isRoot(std::u16string_view path) {
  const auto last = path.find_last_not_of(u'/');
  if (last == path.npos) return true;
  return path.substr(0, 2) == u"//" && path.find(u'/', 2) == last + 1;
}

}  // namespace

FilePath::FilePath(const std::u16string& path) noexcept
    : given_(path), path_(std::u16string_view(path).substr(0, path.find(u'\0'))) {
  constexpr std::u16string_view mark = u"//:";
  if (path_.substr(0, mark.size()) == mark) path_.remove_prefix(mark.size());
}

std::u16string_view FilePath::extension() const noexcept {
  const auto element = lastElement();
  const auto dot = element.rfind(u'.');
  return dot == element.npos ? std::u16string_view() : element.substr(dot);
}

// A network name "//name" is one element. Here it loses its separators, which does not change the extension.
std::u16string_view FilePath::lastElement() const noexcept {
  if (!path_.empty() && path_.back() == u'/') return isRoot(path_) ? u"/" : u".";
  const auto separator = path_.rfind(u'/');
  return separator == path_.npos ? path_ : path_.substr(separator + 1);
}

const std::string& FilePath::native() const {
  if (!native_)
    native_ = path_.size() == given_.size() ? QARPath::toNative(given_) : QARPath::toNative(std::u16string(path_));
  return *native_;
}

}  // namespace Korvane::qardatainterfaces
