// Each system call of each way to read fails once, with each error, or delivers less than it was asked for.

#undef _FORTIFY_SOURCE  // fortified headers define some of these functions themselves

#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"

#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int cut_short = -1;

// What happens to the calls of the library, which all come here.
struct {
  std::size_t countdown = 0;  // 0: nothing; 1: the next call
  int error = 0;
  const char* hit = nullptr;
} fault;
std::size_t injected = 0;

bool strikes(const char* call) {
  if (fault.countdown == 0 || --fault.countdown > 0) return false;
  fault.hit = call;
  ++injected;
  return true;
}

template <class... Arguments>
long call(const char* name, long number, Arguments... arguments) {
  if (!strikes(name) || fault.error == cut_short) return ::syscall(number, arguments...);
  if (number == SYS_close) ::syscall(number, arguments...);  // it is closed whatever it says
  errno = fault.error;
  return -1;
}

std::size_t shortened(const char* name, std::size_t size) {
  return fault.countdown == 1 && fault.error == cut_short && strikes(name) ? std::max<std::size_t>(size / 3, 1)
                                                                           : size;
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {
int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const auto mode = va_arg(rest, unsigned);  // whatever that is if there is none
  va_end(rest);
  return static_cast<int>(call("open", SYS_open, path, flags, mode));
}
int __open_2(const char* path, int flags) { return open(path, flags); }  // what hardened code calls
int close(int handle) { return static_cast<int>(call("close", SYS_close, handle)); }
int fstat(int handle, struct stat* to) noexcept { return static_cast<int>(call("fstat", SYS_fstat, handle, to)); }
int lstat(const char* path, struct stat* to) noexcept { return static_cast<int>(call("lstat", SYS_lstat, path, to)); }
int stat(const char* path, struct stat* to) noexcept { return static_cast<int>(call("stat", SYS_stat, path, to)); }
ssize_t readlink(const char* path, char* to, size_t size) noexcept {
  return call("readlink", SYS_readlink, path, to, size);
}
ssize_t read(int handle, void* to, size_t size) {
  return call("read", SYS_read, handle, to, shortened("read", size));
}
ssize_t pread(int handle, void* to, size_t size, off_t at) {
  return call("pread", SYS_pread64, handle, to, shortened("pread", size), at);
}
off_t lseek(int handle, off_t to, int from) noexcept { return call("lseek", SYS_lseek, handle, to, from); }
}
#pragma GCC visibility pop

namespace Korvane::qardatainterfaces {
namespace {

auto open_files() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

using Way = std::function<std::string(QARFileReaderFactory&, std::u16string)>;

std::string by_chunks(QARFileReader& reader) {
  std::string all;
  for (;;) {
    const auto next = chunk(reader, 30000);
    if (next == refused) return next;
    all += next;
    if (!reader.more()) return all;
  }
}

// Content, or how there comes to be none.
std::string read_by(const Way& way, QARFileReaderFactory& factory, const std::u16string& path) {
  try {
    return way(factory, path);
  } catch (const rtxi18nutil::DeployedException& e) {
    return e.identifier();
  } catch (const std::exception& e) {  // of the status queries
    return "refused: " + std::string(e.what());
  }
}

bool is_refusal(const std::string& result) {
  return result.empty() || result == refused || result == "QARDATAINTERFACES_FILE_OPEN_FAILED" ||
         result.find("refused: ") == 0;
}

TEST(SystemCalls, FailWithoutDoingHarm) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t", u".qvz"}, new ScriptedTransform(ScriptedTransform::copy));
  const auto content = pattern(200000);
  const auto plain = directory.file("plain", content), odd = directory.file("x.t", content);
  const auto named = directory.file("x.qvz", content), link = directory.link("link", std::string(100, 't'));
  const Way chunks = [](auto& f, auto path) { return by_chunks(*f.getReader(path)); };
  const Way whole = [](auto& f, auto path) { return text(f.getReader(path)->readAll()); };
  const Way runtime = [](auto& f, auto path) { return text(f.getRuntimeReader(path)->readAll()); };
  const Way both = [](auto& f, auto path) {
    const auto reader = f.getReader(path);
    const auto start = chunk(*reader, 10);
    const auto all = text(reader->readAll());
    if (!reader->readSucceeded() || reader->ready() != 0) return std::string(refused);
    const auto rest = by_chunks(*reader);
    if (start == refused || rest == refused) return std::string(refused);
    EXPECT_EQ(start + rest, all);
    return all;
  };
  const struct {
    std::u16string path;
    Way way;
  } cases[] = {
      {plain, chunks},        {plain, whole},
      {plain, runtime},       {plain, both},
      {odd, chunks},          {odd, whole},
      {odd, runtime},         {named, chunks},
      {link, chunks},         {link, whole},
      {link, runtime},        {u"/dev/zero", [](auto& f, auto path) { return chunk(*f.getRuntimeReader(path), 9); }},
      {u"/dev/null", runtime}};
  for (const auto& [path, way] : cases) {
    fault = {};
    const auto expected = read_by(way, factory, path);
    for (const int error : {EINTR, EIO, ENOMEM, EMFILE, EACCES, ELOOP, cut_short}) {
      fault.hit = "";
      for (std::size_t n = 1; fault.hit != nullptr; ++n) {
        const auto before = open_files();
        fault = {n, error, nullptr};
        const auto result = read_by(way, factory, path);
        const std::string hit = fault.hit == nullptr ? "nothing" : fault.hit;
        SCOPED_TRACE(hit + ", call " + std::to_string(n) + ", error " + std::to_string(error));
        const bool repeated = error == EINTR && (hit == "open" || hit == "read" || hit == "pread");
        if (hit == "nothing" || hit == "close" || error == cut_short || repeated) {
          EXPECT_TRUE(result == expected);
        } else {
          EXPECT_TRUE(result == expected || is_refusal(result)) << result.substr(0, 100);
        }
        fault.countdown = 0;
        EXPECT_EQ(open_files(), before) << "not closed";
        EXPECT_TRUE(read_by(way, factory, path) == expected) << "afterwards";
        ASSERT_FALSE(HasFailure());
      }
    }
  }
  std::printf("%zu system calls failed\n", injected);
  EXPECT_GT(injected, 300U);
}

TEST(SystemCalls, MayMeetAFileThatChangesWithEach) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  const auto path = directory.file("changing", "");
  const auto native = directory.native("changing");
  for (const std::size_t before : {0U, 1U, 100U, 70000U, 300000U})
    for (const std::size_t after : {0U, 1U, 100U, 70000U, 300000U}) {
      directory.file("changing", pattern(before));
      const auto reader = factory.getReader(path);
      chunk(*reader, static_cast<unsigned int>(std::min<std::size_t>(before, 50)));  // up to the end, not past it
      directory.file("changing", pattern(after));
      EXPECT_EQ(text(reader->readAll()), pattern(after)) << before << ' ' << after;
      std::filesystem::remove(native);
      EXPECT_EQ(text(reader->readAll()), pattern(after)) << before << ' ' << after;
    }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
