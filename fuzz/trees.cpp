// Compares the factory with system calls, for files, links and directories of any name.

#include "input.hpp"
#include "support/ScriptedTransform.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Korvane::qardatainterfaces;

namespace {

constexpr auto no_status = "no status";
constexpr auto open_failed = "QARDATAINTERFACES_FILE_OPEN_FAILED";

/// The expected content, or why there is none. Empty for a file that might never end.
std::string expected(const std::u16string& path, bool runtime, const std::u16string& registered) try {
  std::u16string name = path.c_str();
  if (name.compare(0, 3, u"//:") == 0) name.erase(0, 3);
  const auto native = QARPath::toNative(name);
  struct stat found {};
  if ((runtime ? ::stat(native.c_str(), &found) : ::lstat(native.c_str(), &found)) != 0) {
    if (runtime) return open_failed;
    return errno == ENOENT || errno == ENOTDIR ? "QARDATAINTERFACES_FILE_NOT_EXIST" : no_status;
  }
  std::array<char, 4096> bytes;
  if (S_ISLNK(found.st_mode)) {
    const auto size = ::readlink(native.c_str(), bytes.data(), bytes.size());
    return "content " + std::string(bytes.data(), static_cast<std::size_t>(size));
  }
  if (!S_ISREG(found.st_mode)) {
    if (runtime) return S_ISFIFO(found.st_mode) ? "" : open_failed;
    return "QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED";
  }
  const int handle = ::open(native.c_str(), O_RDONLY | O_CLOEXEC);
  const auto size = ::read(handle, bytes.data(), bytes.size());
  ::close(handle);
  const std::string content(bytes.data(), static_cast<std::size_t>(size));
  if (name.substr(name.find_last_of(u"./")) != registered) return "content " + content;
  if (content.empty()) return "error " + std::to_string(QARFileReader::zero_length);
  if (path.substr(path.size() - 3) != u"qvz") return "content " + content + "!";
  return "content " + ku::i18n::codecvt_ustring_to_string("UTF-8", true).convert(path.data(), path.size()) + "!";
} catch (const ku::i18n::CvtExceptionBase&) {  // the path has no native name
  return runtime ? open_failed : no_status;
}

std::string found(QARFileReaderFactory& factory, const std::u16string& path, bool runtime) try {
  const auto reader = runtime ? factory.getRuntimeReader(path) : factory.getReader(path);
  const auto whole = text(reader->readAll());
  require(!reader->readError());
  if (!reader->readSucceeded()) return "error " + std::to_string(reader->lastError());
  if (whole.size() % 2 == 0) return "content " + whole;
  std::string chunks;
  QARMetaData meta;
  do {
    chunks += chunk(*reader, 5, meta);
  } while (reader->more());
  require(chunks == whole || (chunks == whole.substr(0, 5) && reader->ready() == 0));  // each read restarts a link
  return "content " + whole;
} catch (const Korvane::rtxi18nutil::DeployedException& e) {
  return e.identifier();
} catch (const std::runtime_error&) {
  return no_status;
}

/// A FIFO delivers its content, once.
void check_fifo(const std::string& native, const std::string& content) {
  const int writer = ::open(native.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  require(::write(writer, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
  const auto reader = QARFileReaderFactory().getRuntimeReader(QARPath::fromNative(native));
  ::close(writer);
  const auto start = chunk(*reader, 3);
  require(start + text(reader->readAll()) == content && reader->ready() == QARFileReader::not_good);
}

/// The files created for one input. The directory above them exists until the program ends.
class Tree {
public:
  Tree() = default;
  ~Tree() {
    for (; !made_.empty(); made_.pop_back())
      if (::unlink(made_.back().c_str()) != 0) ::rmdir(made_.back().c_str());
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  static const std::string& root() {
    static const struct Root {
      Root() { std::filesystem::create_directory(path); }
      ~Root() { ::rmdir(path.c_str()); }
      std::string path =
          (std::filesystem::temp_directory_path() / ("zrqar." + std::to_string(::getpid()))).native() + "/";
    } root;
    return root.path;
  }

  enum class Kind { directory, file, fifo, socket, link, nothing };

  bool make(Kind kind, const std::string& path, const std::string& content) {
    const bool is_made = make_entry(kind, path.c_str(), content);
    if (is_made) made_.push_back(path);
    return is_made;
  }

private:
  static bool make_entry(Kind kind, const char* path, const std::string& content) {
    switch (kind) {
      case Kind::directory: return ::mkdir(path, 0755) == 0;
      case Kind::fifo: return ::mkfifo(path, 0644) == 0;
      case Kind::socket: return ::mknod(path, S_IFSOCK | 0644, 0) == 0;
      case Kind::link: return ::symlink(content.c_str(), path) == 0;
      case Kind::nothing: return false;
      case Kind::file: break;
    }
    const int handle = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (handle < 0) return false;
    require(::write(handle, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    ::close(handle);
    return true;
  }

  std::vector<std::string> made_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using Kind = Tree::Kind;
  static constexpr Kind kinds[] = {Kind::directory, Kind::file, Kind::fifo, Kind::socket, Kind::link, Kind::nothing};
  // Only a few, so that paths and links often lead to existing files; the target `paths` tries all names.
  static const std::string parts[] = {
      "a",    "b",    "c", "/", "a", "b", ".t", "qvz", "/", ".", "//:", "\xC3\xA9", std::string(256, 'n'),
      "\xFF", {'\0'}, "\n"};
  static const std::u16string prefixes[] = {u"", u"//:", u"//"};
  static const std::u16string suffixes[] = {u"", u"", u"", u"", u"/", u".", {u"\0.qvz", 5}, u"\xD800"};
  static const auto root = QARPath::fromNative(Tree::root());
  struct Asked {
    std::u16string path;
    bool runtime;
  };
  Input input(data, size);
  Tree tree;
  std::vector<Asked> asked;
  std::u16string registered;
  // Links are created last and not through each other. Neither links nor names lead out of the tree.
  for (auto kind = Kind::directory; !input.empty() && asked.size() < 2;) {
    const auto choice = input.number();
    kind = std::max(kind, kinds[choice % 6]);
    const auto name = input.some_of(parts, 3), content = input.some_of(parts, 3);
    if ((name + "/" + content).find("..") != name.npos) break;
    const auto native = Tree::root() + name.c_str();
    const bool leads_out = kind == Kind::link && (name.find('/') != name.npos || content[0] == '/');
    const bool is_made = !leads_out && tree.make(kind, native, content);
    if (is_made && kind == Kind::fifo) check_fifo(native, content);
    const auto& start = prefixes[choice / 6 % 3];
    const auto& end = suffixes[choice / 18 % 8];
    const auto path = QARPath::fromNative(name.c_str());
    asked.push_back({start + root + path + end, choice / 144 == 1});
    if (const auto dot = path.rfind(u'.'); dot != path.npos) registered = path.substr(dot);
  }
  QARFileReaderFactory factory;
  const auto append_mark = [](auto& in, auto& out, auto&) {
    out = QARByteArray(text(in) + "!");
    return true;
  };
  factory.addFileTypeHandler({u"", registered}, new ScriptedTransform(append_mark, false));
  for (const auto& [path, runtime] : asked)
    if (const auto result = expected(path, runtime, registered); !result.empty())
      require(found(factory, path, runtime) == result);
  return 0;
}
