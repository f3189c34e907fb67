// Files that change or fail while they are packed. This program replaces `read` of the C library.

#undef _FORTIFY_SOURCE  // fortified headers define the function themselves

#include "packDirectory.hpp"
#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <qardatainterfaces/QARTransform.hpp>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// Called with the name of each file below a temporary directory before it is read; returns an error or 0.
std::function<int(const fs::path& path)> before_read;

}  // namespace

#pragma GCC visibility push(default)
extern "C" ssize_t read(int handle, void* to, size_t size) {
  if (before_read) {
    std::error_code ignored;
    const auto path = fs::read_symlink("/proc/self/fd/" + std::to_string(handle), ignored);
    if (const int error = before_read(path)) {
      errno = error;
      return -1;
    }
  }
  return ::syscall(SYS_read, handle, to, size);
}
#pragma GCC visibility pop

namespace packing {
namespace {

struct Case {
  const char* name;
  std::string file;                                   // "a", of 5 bytes, or "b", of a million
  std::function<void(const fs::path& path)> happens;  // before each read of the file
  int read_error;
  const char* error;
};
void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

class PackingFault : public testing::TestWithParam<Case> {
protected:
  ~PackingFault() override { before_read = nullptr; }
};

TEST_P(PackingFault, NamesTheFileAndLeavesNothing) {
  const TemporaryDirectory directory;
  fs::create_directory(directory.native("tree"));
  fs::create_directory(directory.native("out"));
  directory.file("tree/a", "small");
  directory.file("tree/b", std::string(1'000'000, 'b'));
  before_read = [](const fs::path& path) {
    if (path.filename() != GetParam().file) return 0;
    if (GetParam().happens) GetParam().happens(path);
    return GetParam().read_error;
  };
  Korvane::qardatainterfaces::QARFileReaderFactory factory;
  Description description;
  std::string error = "none";
  try {
    packDirectory(directory.native("tree"), directory.native("out/x.tar"), {}, factory, description, {});
  } catch (const std::exception& e) {
    error = e.what();
  }
  EXPECT_THAT(error, testing::HasSubstr(GetParam().error));
  EXPECT_EQ(fs::is_empty(directory.native("out")), error != "none");
}

INSTANTIATE_TEST_SUITE_P(
    , PackingFault,
    testing::Values(Case{"nothing", "", nullptr, 0, "none"},
                    Case{"grows", "b", [](auto& path) { std::ofstream(path, std::ios::app) << '.'; }, 0,
                         "b: has grown while it was packed"},
                    Case{"shrinks", "b", [](auto& path) { fs::resize_file(path, 600'000); }, 0,
                         "b: has shrunk while it was packed"},
                    Case{"cut_to_nothing", "a", [](auto& path) { fs::resize_file(path, 0); }, 0,
                         "a: has shrunk while it was packed"},
                    Case{"vanishes", "a", [](auto& path) { fs::remove(path.parent_path() / "b"); }, 0,
                         "b: No such file or directory"},
                    Case{"becomes_a_directory", "a",
                         [](auto& path) {
                           if (fs::remove(path.parent_path() / "b")) fs::create_directory(path.parent_path() / "b");
                         },
                         0, "b\" is neither"},
                    Case{"fails", "b", nullptr, EIO, "b: cannot be read (Input/output error)"}),
    [](const auto& i) { return std::string(i.param.name); });

}  // namespace
}  // namespace packing
