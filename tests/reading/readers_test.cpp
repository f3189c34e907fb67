#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/table.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <map>
#include <new>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

namespace fs = std::filesystem;

/// A case of a transcript: its steps.
struct Case {
  std::string name;
  std::vector<Row> steps;
};
void PrintTo(const Case& tested, std::ostream* out) { PrintTo(tested.steps.front(), out); }

/// The cases of all transcripts.
std::vector<Case> cases() {
  std::set<std::string> files, names;
  for (const auto& entry : fs::directory_iterator(ZRQAR_SOURCE_DIR "/tests/reading/transcripts"))
    if (entry.path().extension() == ".txt") files.insert(entry.path().stem());
  std::vector<Case> all;
  for (const auto& file : files) {
    bool begun = false;
    for (const auto& row : table("tests/reading/transcripts/" + file + ".txt")) {
      if (row.at(0) == "case") {
        begun = true;
        all.push_back({test_name(file + ' ' + row.at(1)), {}});
        if (!names.insert(all.back().name).second) row.fail("there is a case of this name already");
      }
      if (!begun) row.fail("a transcript begins with a case");
      all.back().steps.push_back(row);
    }
  }
  return all;
}

/// Performs the steps of a case and compares the results; see transcripts/README.md.
class Readers : public testing::TestWithParam<Case> {
protected:
  Readers() { use(true, false); }

  void use(bool empty_input, bool empty_output) {
    transform = new ScriptedTransform(ScriptedTransform::copy, empty_input, empty_output);
    factory.emplace();
    factory->addFileTypeHandler({u".x", u".qvz", u".xqvz", u".QVZ"}, transform);
    answer(ScriptedTransform::copy);
  }

  void allow(const Row& row) {
    bool empty_input = false, empty_output = false;
    const std::map<std::string, bool*> words = {{"empty-input", &empty_input}, {"empty-output", &empty_output}};
    std::istringstream in(row.at(1));
    for (std::string word; in >> word;) *look_up(row, "policy", words, word) = true;
    use(empty_input, empty_output);
  }

  using Script = ScriptedTransform::Script;

  void answer(const Script& script) {
    transform->script = [=](const QARByteArray& in, QARByteArray& out, QARMetaData& meta) {
      const bool succeeds = script(in, out, meta);
      meta.setUserData(meta.getUserData() + " and filled");
      return succeeds;
    };
  }

  void answer(const Row& row) {
    const auto write = [output = row.last()](bool result) -> Script {
      return [=](auto&, auto& out, auto&) {
        if (!output.empty()) out = output;
        return result;
      };
    };
    const auto clear = [](auto&, auto& out, auto&) {
      out = QARByteArray();
      return true;
    };
    const auto raise = [](auto&, auto&, auto&) -> bool { throw std::runtime_error("broken"); };
    const std::map<std::string, Script> answers = {{"copy", ScriptedTransform::copy},
                                                   {"clear", clear},
                                                   {"throw", raise},
                                                   {"true", write(true)},
                                                   {"false", write(false)}};
    answer(look_up(row, "answer", answers, row.at(1)));
  }

  std::string inputs() const {
    std::string all;
    for (const auto& input : transform->inputs) {
      const auto folder = directory.native("");
      all += input.rfind(folder, 0) == 0 ? "DIR/" + input.substr(folder.size()) : input.substr(0, 20);
      all += ';';
    }
    return all;
  }

  void open_stream(const Row& row) {
    HostileStream::Manners manners;
    const std::map<std::string, std::function<void(const std::string&)>> words = {
        {"-", [](auto&) {}},
        {"most=", [&](auto& value) { manners.most = std::stoul(value); }},
        {"idle=", [&](auto& value) { manners.idle = std::stoi(value); }},
        {"throws_at=", [&](auto& value) { manners.throws_at = std::stoul(value); }},
        {"throws_once_asked", [&](auto&) { manners.throws_once_asked = true; }},
        {"boasts", [&](auto&) { manners.boasts = true; }}};
    std::istringstream in(row.at(3));
    for (std::string word; in >> word;) {
      const auto equals = word.find('=');
      const auto value = equals == word.npos ? word.size() : equals + 1;
      look_up(row, "manner", words, word.substr(0, value))(word.substr(value));
    }
    stream.emplace(row.at(2), manners);
    const auto path = row.at(1);
    reader = factory->getReader({path.begin(), path.end()}, *stream);
  }

  std::u16string path(const std::string& name) const {
    return name[0] == '/' ? std::u16string(name.begin(), name.end()) : directory.path(name);
  }

  // The last two fields: the data that is delivered, and the state of the reader after it.
  template <class Read>
  void expect(const Row& row, Read read) {
    QARMetaData meta(false, "kept");
    std::string delivered;
    try {
      delivered = read(meta);
    } catch (const std::runtime_error&) {
      delivered = "(thrown)";
    } catch (const std::bad_alloc&) {
      delivered = "(no memory)";
    }
    EXPECT_TRUE(delivered == row.last(1)) << testing::PrintToString(delivered.substr(0, 200));
    auto state = (reader->more() ? "more" : "end") + statuses(*reader);
    if (meta.getUserData() != "kept" || meta.isDemo()) state += ", meta " + meta.getUserData();
    EXPECT_EQ(state, row.last());
    EXPECT_EQ(reader->readSucceeded(), reader->lastError() == 0);
  }

  const TemporaryDirectory directory;
  std::optional<QARFileReaderFactory> factory;
  std::optional<HostileStream> stream;
  ScriptedTransform* transform = nullptr;
  std::unique_ptr<QARFileReader> reader;

  static unsigned int size_of(const Row& row) { return static_cast<unsigned int>(row.number(1)); }

  const std::map<std::string, std::function<void(const Row&)>> steps = {
      {"case", [](auto&) {}},
      {"allow", [&](auto& row) { allow(row); }},
      {"answer", [&](auto& row) { answer(row); }},
      {"inputs", [&](auto& row) { EXPECT_EQ(inputs(), row.at(1)); }},
      {"file", [&](auto& row) { directory.file(row.at(1), row.at(2)); }},
      {"link", [&](auto& row) { directory.link(row.at(1), row.at(2)); }},
      {"resize", [&](auto& row) { fs::resize_file(directory.native(row.at(1)), row.number(2)); }},
      {"remove", [&](auto& row) { fs::remove(directory.native(row.at(1))); }},
      {"open", [&](auto& row) { reader = factory->getReader(path(row.at(1))); }},
      {"runtime", [&](auto& row) { reader = factory->getRuntimeReader(path(row.at(1))); }},
      {"stream", [&](auto& row) { open_stream(row); }},
      {"append", [&](auto& row) { stream->append(row.at(1)); }},
      {"id", [&](auto& row) { EXPECT_EQ(reader->getTransformId(), row.at(1)); }},
      {"state", [&](auto& row) { expect(row, [](auto&) { return "-"; }); }},
      {"all", [&](auto& row) { expect(row, [&](auto&) { return text(reader->readAll()); }); }},
      {"all+meta", [&](auto& row) { expect(row, [&](auto& meta) { return text(reader->readAll(meta)); }); }},
      {"read", [&](auto& row) { expect(row, [&](auto&) { return chunk(*reader, size_of(row)); }); }},
      {"read+meta", [&](auto& row) { expect(row, [&](auto& meta) { return chunk(*reader, size_of(row), meta); }); }}};
};

TEST_P(Readers, DoWhatTheTranscriptSays) {
  for (const auto& row : GetParam().steps) {
    const auto trace = row.trace();
    try {
      look_up(row, "step", steps, row.at(0))(row);
    } catch (const std::exception& error) {
      FAIL() << error.what();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, Readers, testing::ValuesIn(cases()), [](const auto& test) { return test.param.name; });

// Cases that a transcript cannot express.

struct OwnReader final : QARFileReader {
  using QARFileReader::QARFileReader;
  using QARFileReader::read;
  using QARFileReader::readAll;
  const char* getTransformId() override { return ""; }
  unsigned int read(void*, unsigned int) override {
    return std::exchange(lastError_, transform_failed) == 0 ? 0 : failed;
  }
  QARByteArray& readAll(QARMetaData& meta) override {
    error_before = lastError_;
    return QARFileReader::readAll(meta);
  }
  int error_before = 0;
};

TEST(FileReaders, CanBeAProgramsOwnAndReadWhatIsLarge) {
  const TemporaryDirectory directory;
  const auto content = pattern(17 << 20);
  OwnReader reader(directory.file("large", content));
  EXPECT_EQ(reader.ready(), 0);
  QARMetaData meta;
  EXPECT_EQ(reader.read(nullptr, 0), 0U);
  EXPECT_EQ(reader.read(nullptr, 0), QARFileReader::failed);
  EXPECT_EQ(reader.read(nullptr, 0, meta), 0U);
  EXPECT_TRUE(text(reader.readAll(meta)) == content);
  EXPECT_EQ(reader.lastError(), 0);
  EXPECT_EQ(std::exchange(reader.error_before, 0), QARFileReader::transform_failed);
  EXPECT_EQ(reader.read(nullptr, 0), 0U);
  std::string start(4, '?');
  for (int again = 0; again < 2; ++again) {
    reader.readAll().read(reinterpret_cast<unsigned char*>(start.data()), 4);
    EXPECT_EQ(reader.error_before, 0);
  }
  EXPECT_EQ(start, content.substr(0, 4)) << "the position begins anew";
}

#ifndef __SANITIZE_THREAD__  // which needs shadow memory for all of the 4 GiB
TEST(FileReaders, ReadBeyond4GiBInChunksBelowTheFailureValue) {
  constexpr std::size_t size = std::size_t{1} << 32, piece = 1 << 26;
  const int file = ::memfd_create("sparse", 0), room = ::memfd_create("room", 0);
  ASSERT_TRUE(::ftruncate(file, size) == 0 && ::ftruncate(room, piece) == 0);
  ASSERT_EQ(::pwrite(file, "end", 3, size), 3);
  // The same memory is mapped repeatedly in the whole buffer.
  auto* const buffer = static_cast<char*>(::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  for (std::size_t at = 0; at < size; at += piece)
    ASSERT_NE(::mmap(buffer + at, piece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, room, 0), MAP_FAILED);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const auto reader = QARFileReaderFactory().getRuntimeReader({path.begin(), path.end()});
  EXPECT_EQ(reader->read(buffer, 0xFFFFFFFF), 0xFFFFFFFEU);
  EXPECT_EQ(chunk(*reader, 9), std::string(2, '\0') + "end");
  EXPECT_EQ(::munmap(buffer, size), 0);
  EXPECT_EQ(::close(file), 0);
  EXPECT_EQ(::close(room), 0);
}
#endif

TEST(FileReaders, ReadStreamsInChunksBelowTheFailureValue) {
  struct Endless final : opc::InputStream {
    std::uint64_t read(void*, std::uint64_t size) override { return size; }
    bool exhausted() override { return false; }
  } stream;
  EXPECT_EQ(QARFileReaderFactory().getReader(u"a", stream)->read(nullptr, 0xFFFFFFFF), 0xFFFFFFFEU);
}

TEST(FileReaders, CloseTheirFilesAndDoNotPassThemToPrograms) {
  const TemporaryDirectory directory;
  const int next = ::dup(0);  // the descriptor that the next opening will get
  ::close(next);
  auto reader = QARFileReaderFactory().getReader(directory.file("file", ""));
  EXPECT_EQ(::fcntl(next, F_GETFD), FD_CLOEXEC);
  reader.reset();
  EXPECT_EQ(::fcntl(next, F_GETFD), -1);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
