#include "NewFile.hpp"

#include "umask.hpp"

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace packing {

NewFile::NewFile(const std::string& path)
    : temporary_(std::filesystem::path(path).replace_filename(".pack.XXXXXX")),
      file_(::mkostemp(temporary_.data(), O_CLOEXEC), path) {}

NewFile::~NewFile() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void NewFile::commit() {
  if (::fchmod(file_.get(), 0666 & ~currentUmask()) != 0 || ::fsync(file_.get()) != 0) failAbout(file_.name());
  file_.close();
  if (::rename(temporary_.c_str(), file_.name().c_str()) != 0) failAbout(file_.name());
  temporary_.clear();
}

bool NewFile::is(const struct stat& found) const {
  struct stat own {};
  if (::fstat(file_.get(), &own) != 0) failAbout(file_.name());
  return own.st_dev == found.st_dev && own.st_ino == found.st_ino;
}

}  // namespace packing
