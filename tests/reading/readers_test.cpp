#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/table.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <fstream>
#include <iterator>
#include <map>
#include <new>
#include <optional>
#include <sstream>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

namespace fs = std::filesystem;

/// Performs what the rows of a transcript say, and compares what comes of it; see transcripts/README.md.
class Readers : public testing::TestWithParam<const char*> {
protected:
  void use(const std::string& allowed) {
    const auto allows = [&](const char* word) { return allowed.find(word) != std::string::npos; };
    transform = new ScriptedTransform(answer("copy", ""), allows("empty-input"), allows("empty-output"));
    factory.emplace();
    factory->addFileTypeHandler({u".x", u".qvz", u".xqvz", u".QVZ"}, transform);
  }

  static ScriptedTransform::Script answer(const std::string& result, const std::string& output) {
    return [=](const QARByteArray& in, QARByteArray& out, QARMetaData& meta) {
      if (result == "throw") throw std::runtime_error("broken");
      meta.setUserData(meta.getUserData() + " and filled");
      if (result == "copy") return ScriptedTransform::copy(in, out, meta);
      if (!output.empty()) out = output;
      return result == "true";
    };
  }

  std::string inputs() const {
    std::string all;
    for (const auto& input : transform->inputs) {
      const auto folder = directory->native("");
      all += input.rfind(folder, 0) == 0 ? "DIR/" + input.substr(folder.size()) : input.substr(0, 20);
      all += ';';
    }
    return all;
  }

  void open_stream(const std::string& path, const std::string& content, const std::string& words) {
    HostileStream::Manners manners;
    std::istringstream in(words);
    for (std::string word; in >> word;) {
      std::sscanf(word.c_str(), "most=%zu", &manners.most);
      std::sscanf(word.c_str(), "idle=%d", &manners.idle);
      std::sscanf(word.c_str(), "throws_at=%zu", &manners.throws_at);
      manners.boasts |= word == "boasts";
    }
    stream.emplace(content, manners);
    reader = factory->getReader({path.begin(), path.end()}, *stream);
  }

  std::u16string path(const std::string& name) const {
    return name[0] == '/' ? std::u16string(name.begin(), name.end()) : directory->path(name);
  }

  // The last two fields: what is delivered, and in which state that leaves the reader.
  template <class Read>
  void expect(const Row& row, Read read) {
    QARMetaData meta(false, "kept");
    std::string delivered;
    try {
      delivered = read(meta);
    } catch (const std::runtime_error&) {
      delivered = "(thrown)";
    }
    EXPECT_TRUE(delivered == row.end()[-2]) << testing::PrintToString(delivered.substr(0, 200));
    std::string state = reader->more() ? "more" : "end";
    if (reader->lastError() != 0) state += ", error " + std::to_string(reader->lastError());
    if (reader->ready() != 0) state += ", ready " + std::to_string(reader->ready());
    if (meta.getUserData() != "kept" || meta.isDemo()) state += ", meta " + meta.getUserData();
    EXPECT_EQ(state, row.back());
    EXPECT_EQ(reader->readSucceeded(), reader->lastError() == 0);
  }

  std::optional<TemporaryDirectory> directory;
  std::optional<QARFileReaderFactory> factory;
  std::optional<HostileStream> stream;
  ScriptedTransform* transform = nullptr;
  std::unique_ptr<QARFileReader> reader;

  unsigned int size_of(const Row& row) { return static_cast<unsigned int>(std::stoul(row.at(1))); }

  const std::map<std::string, std::function<void(const Row&)>> steps = {
      {"case", [&](auto&) { directory.emplace(), use("empty-input"); }},
      {"allow", [&](auto& row) { use(row.at(1)); }},
      {"answer", [&](auto& row) { transform->script = answer(row.at(1), row.back()); }},
      {"inputs", [&](auto& row) { EXPECT_EQ(inputs(), row.at(1)); }},
      {"file", [&](auto& row) { directory->file(row.at(1), row.at(2)); }},
      {"link", [&](auto& row) { directory->link(row.at(1), row.at(2)); }},
      {"resize", [&](auto& row) { fs::resize_file(directory->native(row.at(1)), std::stoul(row.at(2))); }},
      {"remove", [&](auto& row) { fs::remove(directory->native(row.at(1))); }},
      {"open", [&](auto& row) { reader = factory->getReader(path(row.at(1))); }},
      {"runtime", [&](auto& row) { reader = factory->getRuntimeReader(path(row.at(1))); }},
      {"stream", [&](auto& row) { open_stream(row.at(1), row.at(2), row.at(3)); }},
      {"append", [&](auto& row) { stream->append(row.at(1)); }},
      {"id", [&](auto& row) { EXPECT_EQ(reader->getTransformId(), row.at(1)); }},
      {"state", [&](auto& row) { expect(row, [](auto&) { return "-"; }); }},
      {"all", [&](auto& row) { expect(row, [&](auto&) { return text(reader->readAll()); }); }},
      {"all+meta", [&](auto& row) { expect(row, [&](auto& meta) { return text(reader->readAll(meta)); }); }},
      {"read", [&](auto& row) { expect(row, [&](auto&) { return chunk(*reader, size_of(row)); }); }},
      {"read+meta", [&](auto& row) { expect(row, [&](auto& meta) { return chunk(*reader, size_of(row), meta); }); }}};
};

TEST_P(Readers, DoWhatTheTranscriptSays) {
  for (const auto& row : table(std::string("reading/transcripts/") + GetParam() + ".txt")) {
    SCOPED_TRACE(row.place);
    steps.at(row[0])(row);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, Readers,
                         testing::Values("plain", "mixed", "transforming", "judgement", "stream",
                                         "transformed_stream", "link"),
                         [](const auto& test) { return std::string(test.param); });

// What a transcript cannot say.

struct OwnReader final : QARFileReader {
  using QARFileReader::QARFileReader;
  const char* getTransformId() override { return ""; }
  unsigned int read(void*, unsigned int) override { return 0; }
};

TEST(FileReaders, CanBeAProgramsOwnAndReadWhatIsLarge) {
  const TemporaryDirectory directory;
  const auto content = pattern(17 << 20);
  OwnReader reader(directory.file("large", content));
  EXPECT_EQ(reader.ready(), 0);
  EXPECT_TRUE(text(reader.readAll()) == content);
}

#ifndef __SANITIZE_THREAD__  // which shadows each of the 4 GiB
TEST(FileReaders, CountBeyond32BitsAndNeverAsFarAsTheFailureValue) {
  constexpr std::size_t size = std::size_t{1} << 32, piece = 1 << 26;
  const int file = ::memfd_create("sparse", 0), room = ::memfd_create("room", 0);
  ASSERT_EQ(::ftruncate(file, size) + ::ftruncate(room, piece), 0);
  ASSERT_EQ(::pwrite(file, "end", 3, size), 3);
  // One piece of memory shows up all over the buffer.
  auto* const buffer = static_cast<char*>(::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  for (std::size_t at = 0; at < size; at += piece)
    ASSERT_NE(::mmap(buffer + at, piece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, room, 0), MAP_FAILED);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const auto reader = QARFileReaderFactory().getRuntimeReader({path.begin(), path.end()});
  EXPECT_EQ(reader->read(buffer, 0xFFFFFFFF), 0xFFFFFFFEU);
  EXPECT_EQ(chunk(*reader, 9), std::string(2, '\0') + "end");
  EXPECT_EQ(::munmap(buffer, size) + ::close(file) + ::close(room), 0);
}
#endif

// What can be read of these files is given to the first read only, if that asks for all of it.
TEST(FileReaders, ReadWholeFilesThatDoNotTellTheirSize) {
  for (const std::string path : {"/proc/sys/kernel/pid_max", "/proc/sys/kernel/printk", "/proc/self/status"}) {
    std::ifstream file(path);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    const auto reader = QARFileReaderFactory().getReader({path.begin(), path.end()});
    const auto whole = text(reader->readAll());
    EXPECT_EQ(whole.substr(0, 40), content.substr(0, 40)) << path;
    EXPECT_TRUE(whole.size() > 1 && whole.back() == '\n') << path;
  }
}

TEST(FileReaders, ReadWholeWhatWasTooLargeForTheMemoryWhenItWasOpened) {
  const int file = ::memfd_create("shrunk", 0);
  ASSERT_EQ(::ftruncate(file, 1L << 50), 0);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const auto reader = QARFileReaderFactory().getRuntimeReader({path.begin(), path.end()});
  EXPECT_THROW(reader->readAll(), std::bad_alloc);
  ASSERT_EQ(::pwrite(file, "small", 5, 0), 5);
  ASSERT_EQ(::ftruncate(file, 5), 0);
  EXPECT_EQ(text(reader->readAll()), "small");
  EXPECT_EQ(reader->ready(), 0);
  ::close(file);
}

TEST(FileReaders, SkipNothingIfAStreamThrowsWhenItIsAskedForMore) {
  struct Forgetful final : opc::InputStream {
    std::uint64_t read(void* to, std::uint64_t size) override {
      const auto count = text.copy(static_cast<char*>(to), size, at);
      at += count;
      return count;
    }
    bool exhausted() override {
      if (++asked == 2) throw std::runtime_error("asked once too often");
      return at == text.size();
    }
    std::string text = "abcdefgh";
    std::size_t at = 0;
    int asked = 0;
  } stream;
  const auto reader = QARFileReaderFactory().getReader(u"name", stream);
  EXPECT_THROW(chunk(*reader, 3), std::runtime_error);
  EXPECT_EQ(chunk(*reader, 2), "ab");
  EXPECT_EQ(chunk(*reader, 8), "c");
  EXPECT_EQ(chunk(*reader, 8), "defgh");
  EXPECT_FALSE(reader->more());
}

TEST(FileReaders, HoldTheirFilesOpenForThemselvesOnly) {
  const TemporaryDirectory directory;
  const int next = ::dup(0);  // what opening will give once more
  ::close(next);
  auto reader = QARFileReaderFactory().getReader(directory.file("file", ""));
  EXPECT_EQ(::fcntl(next, F_GETFD), FD_CLOEXEC);
  reader.reset();
  EXPECT_EQ(::fcntl(next, F_GETFD), -1);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
