#include <ku/filesystem/status.hpp>

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

namespace ku::filesystem {

file_status status(const std::string& native_path) {
  struct stat found {};
  if (::stat(native_path.c_str(), &found) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return {file_type::not_found, 0};
    throw std::system_error(errno, std::generic_category(), "ku::filesystem::status");
  }
  const auto length = static_cast<std::uint64_t>(found.st_size);
  if (S_ISREG(found.st_mode)) return {file_type::regular, length};
  return {S_ISDIR(found.st_mode) ? file_type::directory : file_type::other, length};
}

}  // namespace ku::filesystem
