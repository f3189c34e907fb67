// For each way to read, each system call fails once with each error, or delivers less than requested.

#undef _FORTIFY_SOURCE  // fortified headers define some of these functions themselves

#include "support/Pipe.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Watchdog.hpp"
#include "support/content.hpp"
#include "support/table.hpp"

#include <gmock/gmock.h>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int cut_short = -1;  // no error; the call delivers less, if it reads

// The fault to inject into the library's system calls, which all come here.
struct Fault {
  std::size_t countdown = 0;             // 0: nothing; 1: the next call
  std::vector<int> errors = {};          // of that call and of the next ones
  std::vector<std::string> struck = {};  // the names of these calls
} fault;
std::size_t injected = 0, closed_twice = 0;
bool files_are_disks = false;  // block devices, which only root can create
std::function<void()> before_each_read, before_next_open;

// The error of this call, or 0.
int strike(const char* call) {
  if (fault.countdown == 0 || (fault.countdown > 1 && fault.countdown-- > 1)) return 0;
  const int error = fault.errors.at(fault.struck.size());
  fault.struck.emplace_back(call);
  ++injected;
  if (fault.struck.size() == fault.errors.size()) fault.countdown = 0;
  return error;
}

template <class... Arguments>
long perform(int error, long number, Arguments... arguments) {
  if (error == 0 || error == cut_short) return ::syscall(number, arguments...);
  if (number == SYS_close) ::syscall(number, arguments...);  // even a failed close closes the file
  errno = error;
  return -1;
}

template <class... Arguments>
long call(const char* name, long number, Arguments... arguments) {
  return perform(strike(name), number, arguments...);
}

template <class... Arguments>
ssize_t call_read(const char* name, long number, int handle, void* to, std::size_t size, Arguments... arguments) {
  if (before_each_read) before_each_read();
  const int error = strike(name);
  if (error == cut_short) size = std::max<std::size_t>(size / 3, 1);
  return perform(error, number, handle, to, size, arguments...);
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {
int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const auto mode = va_arg(rest, unsigned);  // arbitrary if it was not passed
  va_end(rest);
  if (const auto before = std::exchange(before_next_open, nullptr)) before();
  return static_cast<int>(call("open", SYS_open, path, flags, mode));
}
int __open_2(const char* path, int flags) { return open(path, flags); }  // called by hardened code
int close(int handle) {
  const auto result = static_cast<int>(call("close", SYS_close, handle));
  if (result < 0 && errno == EBADF) ++closed_twice;
  return result;
}
int fcntl(int handle, int command, ...) {
  va_list rest;
  va_start(rest, command);
  const auto argument = va_arg(rest, long);  // arbitrary if it was not passed
  va_end(rest);
  return static_cast<int>(call("fcntl", SYS_fcntl, handle, command, argument));
}
int poll(pollfd* asked, nfds_t count, int timeout) {
  return static_cast<int>(call("poll", SYS_poll, asked, count, timeout));
}
int fstat(int handle, struct stat* to) noexcept {
  const auto result = static_cast<int>(call("fstat", SYS_fstat, handle, to));
  if (files_are_disks) {
    to->st_mode = S_IFBLK;
    to->st_size = 0;
  }
  return result;
}
int lstat(const char* path, struct stat* to) noexcept { return static_cast<int>(call("lstat", SYS_lstat, path, to)); }
int stat(const char* path, struct stat* to) noexcept { return static_cast<int>(call("stat", SYS_stat, path, to)); }
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* to) noexcept {
  return static_cast<int>(call("statx", SYS_statx, folder, path, flags, mask, to));
}
ssize_t readlink(const char* path, char* to, size_t size) noexcept {
  return call("readlink", SYS_readlink, path, to, size);
}
ssize_t read(int handle, void* to, size_t size) { return call_read("read", SYS_read, handle, to, size); }
ssize_t pread(int handle, void* to, size_t size, off_t at) {
  return call_read("pread", SYS_pread64, handle, to, size, at);
}
off_t lseek(int handle, off_t to, int from) noexcept { return call("lseek", SYS_lseek, handle, to, from); }
}
#pragma GCC visibility pop

namespace Korvane::qardatainterfaces {
namespace {

std::string by_chunks(QARFileReader& reader) {
  std::string all;
  do {
    const auto next = chunk(reader, 30000);
    if (next == refused) return next;
    if (next.size() < 30000 && reader.more()) return "a short chunk, and more";
    all += next;
  } while (reader.more());
  return all;
}

struct Way {
  const char* name;
  std::function<std::string(QARFileReaderFactory&, std::u16string)> read;
};

const Way ways[] = {{"runtime_chunk", [](auto& f, auto path) { return chunk(*f.getRuntimeReader(path), 9); }},
                    {"runtime_whole", [](auto& f, auto path) { return text(f.getRuntimeReader(path)->readAll()); }},
                    {"whole", [](auto& f, auto path) { return text(f.getReader(path)->readAll()); }},
                    {"chunks", [](auto& f, auto path) { return by_chunks(*f.getReader(path)); }},
                    {"mixed", [](auto& f, auto path) {
                       const auto reader = f.getReader(path);
                       const auto start = chunk(*reader, 10), all = text(reader->readAll());
                       const bool sound = reader->readSucceeded() && reader->ready() == 0;
                       const auto rest = by_chunks(*reader);
                       return sound && start != refused && rest != refused ? start + all + rest : refused;
                     }}};

class SystemCalls : public testing::Test {
protected:
  SystemCalls() { factory.addFileTypeHandler({u".t", u".qvz"}, new ScriptedTransform(ScriptedTransform::copy)); }

  // The content, or the error.
  std::string read(const Way& way, const std::u16string& path) try {
    return way.read(factory, path);
  } catch (const rtxi18nutil::DeployedException& e) {
    return e.identifier();
  } catch (const std::bad_alloc&) {
    return "out of memory";
  } catch (const std::exception& e) {  // thrown by the status queries
    return "refused: " + std::string(e.what());
  }

  // Lets the n-th call fail, and the next ones if there are more errors. Returns whether there were that many calls.
  bool fails_without_harm(const Way& way, const std::u16string& path, std::size_t n, const std::vector<int>& errors) {
    const auto open_files = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    fault = {};
    const auto expected = read(way, path);
    const auto before = open_files();
    fault = {n, errors};
    const auto result = read(way, path);
    const auto struck = std::exchange(fault, {}).struck;
    SCOPED_TRACE(testing::PrintToString(struck) + " from call " + std::to_string(n) + ": errors " +
                 testing::PrintToString(errors));
    bool harmless = true;
    for (std::size_t i = 0; i < struck.size(); ++i) {
      const bool repeated =
          errors[i] == EINTR && (struck[i] == "open" || struck[i] == "read" || struck[i] == "pread");
      harmless &= struck[i] == "close" || errors[i] == cut_short || repeated;
    }
    const bool is_refusal = result.empty() || result == refused || result == "QARDATAINTERFACES_FILE_OPEN_FAILED" ||
                            result.find("refused: ") == 0;
    EXPECT_TRUE(result == expected || (is_refusal && !harmless)) << result.substr(0, 100);
    EXPECT_EQ(open_files(), before) << "not closed";
    EXPECT_EQ(closed_twice, 0U) << "or what was not open";
    EXPECT_TRUE(read(way, path) == expected) << "afterwards";
    return struck.size() == errors.size() && !HasFailure();
  }

  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
};

struct Case {
  std::string file;
  Way way;
};
void PrintTo(const Case& tested, std::ostream* out) { *out << tested.file << ", " << tested.way.name; }

class FailingSystemCalls : public SystemCalls, public testing::WithParamInterface<Case> {};

TEST_P(FailingSystemCalls, DoNoHarm) {
  const auto& [name, way] = GetParam();
  for (const auto* const file : {"plain", "x.t", "x.qvz"}) directory.file(file, pattern(200000));
  directory.link("link", std::string(100, 't'));
  const auto path = name[0] == '/' ? std::u16string(name.begin(), name.end()) : directory.path(name);
  for (const std::vector<int>& errors : {{EINTR},
                                         {EIO},
                                         {ENOMEM},
                                         {EMFILE},
                                         {EACCES},
                                         {EAGAIN},
                                         {EAGAIN, EMFILE},
                                         {EAGAIN, EAGAIN, EIO},
                                         {ELOOP},
                                         {cut_short},
                                         {cut_short, EIO},
                                         {EINTR, EIO},
                                         {EINTR, EINTR},
                                         {cut_short, EINTR, cut_short},
                                         std::vector{EIO, EIO}})
    for (std::size_t n = 1; fails_without_harm(way, path, n, errors);) ++n;
  EXPECT_GE(injected, 12U) << "too few faults were injected";
}

std::vector<Case> cases() {
  std::vector<Case> all;
  // Each file, and how many of the first ways it supports: a link is not read in mixed ways, devices only by runtime
  // readers, and /dev/zero has no end.
  const std::pair<const char*, std::size_t> files[] = {{"plain", 5}, {"x.t", 5},       {"x.qvz", 5},
                                                       {"link", 4},  {"/dev/null", 2}, {"/dev/zero", 1}};
  for (const auto& [file, possible] : files)
    for (std::size_t way = 0; way < possible; ++way) all.push_back({file, ways[way]});
  return all;
}

INSTANTIATE_TEST_SUITE_P(, FailingSystemCalls, testing::ValuesIn(cases()),
                         [](const auto& test) { return test_name(test.param.file + ' ' + test.param.way.name); });

// Some regular files temporarily have nothing to read. The library waits for them, although it opens them with
// O_NONBLOCK.
TEST_F(SystemCalls, WaitForDataOfARegularFile) {
  const auto path = directory.file("plain", "content");
  for (std::size_t way = 2; way < 5; ++way)
    for (std::size_t n = 1; n < 8; ++n) {
      fault = {};
      const auto expected = read(ways[way], path);
      fault = {n, {EAGAIN, cut_short, cut_short, EINTR}};
      const auto result = read(ways[way], path);
      const auto struck = std::exchange(fault, {}).struck;
      if (!struck.empty() && (struck[0] == "read" || struck[0] == "pread")) {
        EXPECT_EQ(result, expected) << ways[way].name << ' ' << n;
      }
    }
}

// What fails after the first read or the first attempt to open: the reason that the caller gets.
TEST_F(SystemCalls, TellWhyWaitingFails) {
  const auto path = directory.file("plain", "content");
  for (const auto& errors :
       {std::vector{EAGAIN, EIO}, {EAGAIN, cut_short, EIO}, {EAGAIN, cut_short, cut_short, EAGAIN}}) {
    const auto reader = factory.getReader(path);
    fault = {1, errors};
    EXPECT_EQ(text(reader->readAll()), "");
    EXPECT_THAT(std::exchange(fault, {}).struck, testing::SizeIs(errors.size()));
    EXPECT_EQ(reader->readError().value(), EAGAIN) << errors.size();
  }
  const Pipe pipe("content");
  const auto reader = factory.getRuntimeReader(pipe.path());
  fault = {2, {EAGAIN, EIO}};
  EXPECT_EQ(text(reader->readAll()), "");
  EXPECT_THAT(std::exchange(fault, {}).struck, testing::ElementsAre("read", "poll"));
  EXPECT_EQ(reader->readError().value(), EAGAIN);

  for (const auto& [errors, reason] : {std::pair(std::vector{EAGAIN, EMFILE}, ", EMFILE"),
                                       {{EAGAIN, cut_short, EIO}, ", EAGAIN"},
                                       {{EAGAIN, cut_short, cut_short, EACCES}, ", EACCES"},
                                       {{EAGAIN, cut_short, cut_short, ENOENT}, ", EAGAIN"}}) {
    before_next_open = [&e = errors] { fault = {1, e}; };
    try {
      factory.getReader(path);
      ADD_FAILURE() << "opened";
    } catch (const rtxi18nutil::DeployedException& e) {
      EXPECT_EQ(Korvane::qardatainterfaces::reason(e), reason) << errors.size();
    }
    fault = {};
  }
}

TEST_F(SystemCalls, RefuseAFifoOrALinkThatTakesThePlaceOfAFile) {
  const auto path = directory.file("plain", "content");
  const auto file = directory.native("plain"), other = directory.native("other");
  directory.file("other", "other content");
  const auto fifo = [&] { EXPECT_EQ(::mkfifo(file.c_str(), 0600), 0); };
  const auto link = [&] { std::filesystem::create_symlink(other, file); };
  const Watchdog watchdog(20, "opening a FIFO that has no writer");
  for (const std::function<void()>& make : {std::function<void()>(fifo), std::function<void()>(link)})
    for (const bool leased : {false, true}) {
      std::filesystem::remove(file);
      directory.file("plain", "content");
      const auto replace = [&] {
        std::filesystem::remove(file);
        make();
      };
      before_next_open = [&] {
        if (!leased) return replace();
        fault = {1, {EWOULDBLOCK}};
        before_next_open = replace;
      };
      EXPECT_EQ(read(ways[2], path), "QARDATAINTERFACES_FILE_OPEN_FAILED");
    }
}

TEST_F(SystemCalls, LeaveTheContentUnchangedIfAPipeFails) {
  for (const auto& [error, expected] : {std::pair(EINTR, "content"), std::pair(EIO, "")})
    for (std::size_t n = 1; n <= 2; ++n) {
      const Pipe pipe("content");
      const auto reader = factory.getRuntimeReader(pipe.path());
      fault = {n + 1, {error}};  // after the query of the position
      const auto content = text(reader->readAll());
      EXPECT_THAT(std::exchange(fault, {}).struck, testing::ElementsAre("read"));
      EXPECT_EQ(content, expected);
      EXPECT_EQ(reader->readError().value(), error == EIO ? EIO : 0);
      EXPECT_EQ(reader->ready(), QARFileReader::not_good);
      EXPECT_EQ(text(reader->readAll()), expected) << "again";
    }
}

TEST_F(SystemCalls, DeliverNothingAfterAFailureEvenIfItWasReadBefore) {
  const auto reader = factory.getReader(directory.file("plain", "content"));
  EXPECT_EQ(chunk(*reader, 3), "con");
  fault = {1, {EIO}};
  EXPECT_EQ(text(reader->readAll()), "");
  EXPECT_THAT(std::exchange(fault, {}).struck, testing::ElementsAre("lseek"));
  EXPECT_EQ(chunk(*reader, 3), refused);
}

TEST_F(SystemCalls, ReadDisks) {
  const auto content = pattern(100000);
  const auto path = directory.file("disk", content);
  files_are_disks = true;
  for (const unsigned int before : {0U, 1U, 70000U, 100000U}) {
    const auto reader = factory.getRuntimeReader(path);
    EXPECT_TRUE(chunk(*reader, before) == content.substr(0, before));
    EXPECT_TRUE(text(reader->readAll()) == content);
    EXPECT_TRUE(chunk(*reader, 200000) == content.substr(before)) << before;
  }
  files_are_disks = false;
}

TEST_F(SystemCalls, FindFilesThatGrowShrinkAndVanishAtEachRead) {
  const auto content = pattern(300000);
  const std::size_t sizes[] = {0, 1, 65536, 70000, 200000, 300000};
  std::size_t reads = 0, shortest = ~0UL, longest = 0;
  for (unsigned long first = 0; first < 6; ++first)
    for (unsigned long step = 1; step < 12; ++step)
      for (const unsigned int chunk_size : {0U, 1000U, 50000U, 100000U}) {
        const auto reader = factory.getReader(directory.file("name", content.substr(0, sizes[first])));
        before_each_read = [&, next = first]() mutable {
          next += step;
          if (++reads % 13 == 0) std::filesystem::remove(directory.native("name"));  // the reader has it open
          directory.file("name", content.substr(0, sizes[next % 6]));
        };
        std::string all = chunk_size == 0 ? text(reader->readAll()) : "";
        while (chunk_size > 0 && reader->more()) all += chunk(*reader, chunk_size);
        before_each_read = nullptr;
        ASSERT_TRUE(content.compare(0, all.size(), all) == 0) << first << ' ' << step << ' ' << chunk_size;
        shortest = std::min(shortest, all.size());
        longest = std::max(longest, all.size());
      }
  EXPECT_TRUE(shortest == 0 && longest == content.size()) << shortest << ' ' << longest;
}
}  // namespace
}  // namespace Korvane::qardatainterfaces
