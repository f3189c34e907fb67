#include "eachName.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

namespace qarread {
namespace {

struct Close {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

struct Free {
  void operator()(char* bytes) const noexcept { std::free(bytes); }
};

}  // namespace

void eachName(const std::string& file, const std::function<void(const std::string&)>& take) {
  const std::unique_ptr<std::FILE, Close> in(file == "-" ? stdin : std::fopen(file.c_str(), "re"));
  if (!in) throw std::system_error(errno, std::generic_category(), file);
  std::unique_ptr<char, Free> line;
  std::size_t room = 0;
  while (true) {
    char* bytes = line.release();
    const auto count = ::getdelim(&bytes, &room, '\0', in.get());
    line.reset(bytes);
    if (count < 0) break;
    take(std::string(bytes));
  }
  if (std::feof(in.get()) == 0) throw std::system_error(errno, std::generic_category(), file);
}

}  // namespace qarread
