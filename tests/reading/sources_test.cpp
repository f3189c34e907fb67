// Every kind of reader on every kind of source, read in every way: sources.txt.

#include "support/HostileStream.hpp"
#include "support/Pipe.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Watchdog.hpp"
#include "support/table.hpp"

#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <boost/algorithm/string.hpp>

#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <thread>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

namespace Korvane::qardatainterfaces {
namespace {

namespace fs = std::filesystem;

const std::string content = "content";
const std::vector<std::string> ways = {"chunks", "whole", "whole+meta", "mixed"};

struct Kind {
  enum Input { file, link, stream } input;
  enum Transform { none, allowing, forbidding } transform;  // that copies; allowing or forbidding empty input
};
const std::map<std::string, Kind> kinds = {{"plain", {Kind::file, Kind::none}},
                                           {"allowing", {Kind::file, Kind::allowing}},
                                           {"forbidding", {Kind::file, Kind::forbidding}},
                                           {"link", {Kind::link, Kind::none}},
                                           {"plain-stream", {Kind::stream, Kind::none}},
                                           {"allowing-stream", {Kind::stream, Kind::allowing}},
                                           {"forbidding-stream", {Kind::stream, Kind::forbidding}}};
const std::map<std::string, bool> at_run_time = {{"get", false}, {"run", true}};

struct Case {
  Row row;
  std::string source, kind, by;

  // A cell may mean the same as the one to its left.
  std::string expected(std::size_t way) const {
    const auto cell = row.at(3 + way);
    return cell == "=" && way > 0 ? expected(way - 1) : cell;
  }
};
void PrintTo(const Case& tested, std::ostream* out) { PrintTo(tested.row, out); }

std::vector<Case> cases() {
  std::vector<Case> all;
  std::set<std::string> names;
  const auto split = [](const std::string& list) {
    std::vector<std::string> parts;
    return boost::split(parts, list, boost::is_any_of(","));
  };
  for (const auto& row : table("tests/reading/sources.txt"))
    for (const auto& source : split(row.at(0)))
      for (const auto& kind : split(row.at(1)))
        for (const auto& by : split(row.at(2))) {
          all.push_back({row, source, kind, by});
          if (!names.insert(source + ' ' + kind + ' ' + by).second) row.fail("there is a row of this kind already");
        }
  return all;
}

/// One source, and one reader on it that reads in one way.
class Trial {
public:
  Trial(const Case& tested, const std::string& way)
      : kind_(look_up(tested.row, "kind of reader", kinds, tested.kind)),
        runtime_(look_up(tested.row, "way to ask", at_run_time, tested.by)),
        way_(way),
        watchdog_(60, tested.row.place() + ", " + way) {
    const auto& source = look_up(tested.row, "source", sources_, tested.source);
    once_open_ = source.once_open;
    in_between_ = source.in_between;
    source.make();
  }
  ~Trial() {
    if (other_.joinable()) other_.join();
    if (child_ > 0) ::waitpid(child_, nullptr, 0);
    if (standard_input_ >= 0) ::dup2(standard_input_, STDIN_FILENO);
    for (const int handle : handles_) ::close(handle);
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  /// The result; nothing if the source is not available on this machine.
  std::optional<std::string> run() {
    if (is_available_) attempt();
    return is_available_ ? std::optional(result_) : std::nullopt;
  }

private:
  void attempt() try {
    const auto path = name_[0] == '/' ? std::u16string(name_.begin(), name_.end()) : directory_.path(name_);
    QARFileReaderFactory factory;
    if (kind_.transform != Kind::none)
      factory.addFileTypeHandler({u".x"},
                                 new ScriptedTransform(ScriptedTransform::copy, kind_.transform == Kind::allowing));
    const auto reader = open(factory, path);
    if (once_open_) once_open_();
    read(*reader);
    result_ += statuses(*reader) + reason(reader->readError());
    if (result_.compare(0, 2, ", ") == 0) result_.erase(0, 2);
  } catch (const rtxi18nutil::DeployedException& error) {
    result_ = error.identifier().substr(std::strlen("QARDATAINTERFACES_FILE_")) + reason(error);
  }

  std::unique_ptr<QARFileReader> open(QARFileReaderFactory& factory, const std::u16string& path) {
    if (kind_.input == Kind::stream) return factory.getReader(path, *stream_);
    return runtime_ ? factory.getRuntimeReader(path) : factory.getReader(path);
  }

  void read(QARFileReader& reader) {
    QARMetaData meta;
    if (way_ == "chunks") result_ = chunks(reader);
    if (way_ == "whole") result_ = text(reader.readAll());
    if (way_ == "whole+meta") result_ = text(reader.readAll(meta));
    if (way_ == "mixed") {
      result_ = chunk(reader, 4);
      if (in_between_) in_between_();
      result_ += '|' + text(reader.readAll());
      result_ += '|' + chunks(reader);
    }
  }

  static std::string chunks(QARFileReader& reader) {
    std::string all;
    int left = 100;
    do {
      const auto next = chunk(reader, 4);
      if (next == refused) return next;
      all += next;
    } while (reader.more() && --left > 0);
    return all;
  }

  void fill(const std::string& text) const { directory_.file(name_, text); }
  void redirect(const std::string& to) const { directory_.link(name_, to); }
  void remove() const { fs::remove(directory_.native(name_)); }
  // A file takes the place of the link.
  void replace() const {
    remove();
    fill(content);
  }
  // A file, link or stream of this content, whichever the reader reads.
  void make(const std::string& text, int idle = 0) {
    if (kind_.input == Kind::file) fill(text);
    if (kind_.input == Kind::link) redirect(text);
    if (kind_.input == Kind::stream) stream_.emplace(text, HostileStream::Manners{~0UL, idle});
  }
  static void send(int to, const std::string& text) {
    EXPECT_EQ(::write(to, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  // A lease on the file, which its holder releases some time after it is requested.
  void lease() {
    fill(content);
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    child_ = ::fork();
    if (child_ == 0) {
      ::alarm(60);
      sigset_t asked;
      ::sigemptyset(&asked);
      ::sigaddset(&asked, SIGIO);
      ::sigprocmask(SIG_BLOCK, &asked, nullptr);
      const int file = ::open(directory_.native(name_).c_str(), O_RDWR);
      const char held = ::fcntl(file, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
      int signal = 0;
      if (::write(ready[1], &held, 1) != 1 || held == 'n' || ::sigwait(&asked, &signal) != 0) ::_exit(1);
      ::usleep(50000);
      ::_exit(::fcntl(file, F_SETLEASE, F_UNLCK));
    }
    ::close(ready[1]);
    char held = 'n';
    ASSERT_EQ(::read(ready[0], &held, 1), 1);
    ::close(ready[0]);
    is_available_ = held == 'y';
  }

  void make_fifo() {
    ASSERT_EQ(::mkfifo(directory_.native(name_).c_str(), 0666), 0);
    const int far = ::open(directory_.native(name_).c_str(), O_RDWR);
    send(far, content);
    once_open_ = [far] { ::close(far); };
  }

  // A source on standard input, which may deliver its data after a delay.
  void make_socket(bool hesitates) {
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    standard_input_ = ::dup(STDIN_FILENO);
    handles_.push_back(standard_input_);
    ::dup2(ends[0], STDIN_FILENO);
    ::close(ends[0]);
    redirect("/dev/stdin");
    if (hesitates) ::fcntl(STDIN_FILENO, F_SETFL, O_NONBLOCK);
    other_ = std::thread([far = ends[1], hesitates] {
      for (const std::string part : {"con", "tent"}) {
        if (hesitates) ::usleep(20000);
        send(far, part);
      }
      ::close(far);
    });
    if (!hesitates) other_.join();
  }

  void make_terminal() {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    is_available_ = master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0;
    if (!is_available_) return;
    const std::string path = ::ptsname(master);
    handles_ = {master, ::open(path.c_str(), O_RDWR | O_NOCTTY)};  // the second keeps what is typed until it is read
    send(master, content + "\4\4");  // the first control character hands over the line, the second ends the input
    if (runtime_)
      redirect(path);
    else
      name_ = path;  // links are not followed
  }

  // Standard input is closed, so the file gets descriptor 0.
  void make_without_input() {
    make(content);
    standard_input_ = ::dup(STDIN_FILENO);
    ::close(STDIN_FILENO);
  }

  // A file of the kernel that reports no size and has the name of the thread.
  void make_sizeless() {
    ::prctl(PR_SET_NAME, "content");
    redirect("/proc/thread-self/comm");
  }

  struct Source {
    std::function<void()> make, once_open = nullptr, in_between = nullptr;
  };

  const Kind& kind_;
  const bool runtime_;
  const std::string& way_;
  const Watchdog watchdog_;
  TemporaryDirectory directory_;
  std::string name_ = "f.x", result_;
  std::optional<HostileStream> stream_;
  std::optional<Pipe> pipe_;
  std::function<void()> once_open_, in_between_;
  std::vector<int> handles_;
  std::thread other_;
  pid_t child_ = 0;
  int standard_input_ = -1;
  bool is_available_ = true;

  const std::map<std::string, Source> sources_ = {
      {"regular", {[&] { make(content); }}},
      {"leased", {[&] { lease(); }}},
      {"no-input", {[&] { make_without_input(); }}},
      {"vanished", {[&] { make(content); }, [&] { remove(); }}},
      {"returned", {[&] { make(content); }, [&] { remove(); }, [&] { make(content); }}},
      {"replaced", {[&] { make("gone"); }, [&] { replace(); }}},
      {"grown", {[&] { make("con"); }, [&] { make(content); }}},
      {"shrunk", {[&] { make(content); }, [&] { fs::resize_file(directory_.native(name_), 3); }}},
      {"rewritten", {[&] { make(content); }, nullptr, [&] { make("CONTENT"); }}},
      {"empty", {[&] { make(""); }}},
      {"filled", {[&] { make(""); }, nullptr, [&] { stream_->append(content); }}},
      {"stalling", {[&] { make(content, 1000); }}},
      {"fifo", {[&] { make_fifo(); }}},
      {"pipe", {[&] { redirect(pipe_.emplace(content).native()); }}},
      {"socket", {[&] { make_socket(false); }}},
      {"waiting", {[&] { make_socket(true); }}},
      {"terminal", {[&] { make_terminal(); }}},
      {"sizeless", {[&] { make_sizeless(); }}},
      {"unreadable", {[&] { redirect("/proc/self/mem"); }}},  // of which nothing is mapped at 0
      {"missing", {[] {}}}};
};

class Sources : public testing::TestWithParam<Case> {};

TEST_P(Sources, AreReadOrFailAsListed) {
  for (std::size_t way = 0; way < ways.size(); ++way) {
    const auto trace = GetParam().row.trace();
    SCOPED_TRACE(ways[way]);
    Trial trial(GetParam(), ways[way]);
    if (const auto result = trial.run())
      EXPECT_EQ(*result, GetParam().expected(way));
    else
      GTEST_SKIP() << "not available on this machine";
  }
}

std::string name_of(const testing::TestParamInfo<Case>& test) {
  return boost::replace_all_copy(test.param.source + '_' + test.param.kind + '_' + test.param.by, "-", "_");
}
INSTANTIATE_TEST_SUITE_P(, Sources, testing::ValuesIn(cases()), name_of);

}  // namespace
}  // namespace Korvane::qardatainterfaces
