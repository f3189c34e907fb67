#include "NewTree.hpp"

#include "umask.hpp"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace packing {
namespace {

namespace fs = std::filesystem;

constexpr int only_directory = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string withoutSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

/// The directory of an entry, with the entry's own name in it.
class Place {
public:
  Place(const Descriptor& root, const std::string& name)
      : directory_(::fcntl(root.get(), F_DUPFD_CLOEXEC, 0), name), name_(name.substr(name.rfind('/') + 1)) {
    std::size_t begin = 0;
    for (auto end = name.find('/'); end != name.npos; end = name.find('/', begin)) {
      const auto element = name.substr(begin, end - begin);
      begin = end + 1;
      if (::mkdirat(directory_.get(), element.c_str(), 0777) != 0 && errno != EEXIST) failAbout(name);
      directory_.replace(::openat(directory_.get(), element.c_str(), only_directory));
    }
  }

  int directory() const noexcept { return directory_.get(); }
  const char* name() const noexcept { return name_.c_str(); }

private:
  Descriptor directory_;
  std::string name_;
};

}  // namespace

NewTree::NewTree(const std::string& path)
    : path_(withoutSlashes(path)), temporary_(fs::path(path_).replace_filename(".unpack.XXXXXX")) {
  if (const auto status = fs::symlink_status(path_); fs::exists(status)) {
    if (!fs::is_directory(status)) throw std::system_error(ENOTDIR, std::generic_category(), path_);
    if (!fs::is_empty(path_)) throw std::system_error(ENOTEMPTY, std::generic_category(), path_);
  }
  if (::mkdtemp(temporary_.data()) == nullptr) failAbout(path_);
  try {
    root_.emplace(::open(temporary_.c_str(), only_directory), path_);
  } catch (...) {
    ::rmdir(temporary_.c_str());
    throw;
  }
}

NewTree::~NewTree() {
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove_all(temporary_, ignored);
}

void NewTree::makeDirectory(const std::string& name) { Place(*root_, name + '/'); }

Descriptor NewTree::makeFile(const std::string& name, bool executable) {
  const Place place(*root_, name);
  constexpr int new_one = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  return {::openat(place.directory(), place.name(), new_one, executable ? 0777 : 0666), name};
}

void NewTree::makeLink(const std::string& name, const std::string& target) {
  const Place place(*root_, name);
  if (::symlinkat(target.c_str(), place.directory(), place.name()) != 0) failAbout(name);
}

void NewTree::makeHardLink(const std::string& name, const std::string& target) {
  const Place from(*root_, target);
  const Place to(*root_, name);
  if (::linkat(from.directory(), from.name(), to.directory(), to.name(), 0) != 0) failAbout(name);
}

void NewTree::commit() {
  if (::chmod(temporary_.c_str(), 0777 & ~currentUmask()) != 0 || ::rename(temporary_.c_str(), path_.c_str()) != 0)
    failAbout(path_);
  temporary_.clear();
}

}  // namespace packing
