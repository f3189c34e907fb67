// Lets each allocation of each operation fail: alone, with all later ones, and with some of them.

#include "support/Allocator.hpp"
#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/HostileStream.hpp"
#include "support/Pipe.hpp"
#include "support/Reporting.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/seen.hpp"
#include "support/table.hpp"

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>

#include <sys/wait.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

using ku::i18n::ZrLocale;
using qar::qardatainterfaces::QARDATAINTERFACES_FILE_OPEN_FAILED;
using rtxi18nutil::DeployedException;

const std::string long_text(100, 'x');
const std::u16string long_name(100, u'n');
const auto file_content = pattern(100000);
constexpr auto conversion_failed = "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER";

// Whether the error has this id, and its text or, if there was no memory for the text, the name of the id.
bool is_named(const DeployedException& error, const std::string& name) {
  return error.identifier() == name && (error.what() == name || std::strlen(error.what()) > 20);
}

// Whether the operation succeeded. A lack of memory may cause `std::bad_alloc` or the exception `error`.
template <class Work>
bool attempt(Work work, std::size_t n, std::size_t period, const std::string& error, bool& failed) {
  try {
    Allocator::fail_at(n, period);
    work();
    failed = Allocator::stop_failing();
    return true;
  } catch (const std::exception& e) {
    failed = Allocator::stop_failing();
    const auto* const deployed = dynamic_cast<const DeployedException*>(&e);
    const bool lacks_memory = dynamic_cast<const std::bad_alloc*>(&e) != nullptr;
    EXPECT_TRUE(lacks_memory || (deployed != nullptr && is_named(*deployed, error))) << e.what();
    return false;
  }
}

class FirstCall : public testing::TestWithParam<const char*> {};

// Runs in a process that has done nothing before, so each child process still has to initialise everything, including
// ICU.
TEST_P(FirstCall, SucceedsAfterAFailedAllocation) {
  const std::string encoding = GetParam();
  const auto content = pattern(3000);
  int status = 0;
  for (std::size_t n = 1; status == 0; ++n) {
    SCOPED_TRACE(n);
    const auto child = ::fork();
    if (child == 0) {
      ::alarm(10);
      const CapturedOutput output;
      QARByteArray out, letter;
      bool failed = true;
      const auto work = [&] {
        const ContentLocale locale(encoding);
        QARMetaData meta;
        LCPToUTF8Transform().transform(QARByteArray(content), out, meta);
        UTF8ToLCPTransform().transform(QARByteArray(std::string("ṍ")), letter, meta);
        const DeployedException error(QARDATAINTERFACES_FILE_OPEN_FAILED("path", "reason"));
        return is_named(error, "QARDATAINTERFACES_FILE_OPEN_FAILED");
      };
      attempt(work, n, n % 2 == 0, conversion_failed, failed);
      const bool named = work();
      const auto units = ku::i18n::codecvt_string_to_ustring(encoding, true).convert(&content[0], content.size());
      const auto utf8 = ku::i18n::codecvt_ustring_to_string("UTF-8", true).convert(&units[0], units.size());
      const auto spelt = ku::i18n::codecvt_ustring_to_string(encoding, true).convert(u"ṍ", 1);
      if (testing::Test::HasFailure() || !named || text(out) != utf8 || text(letter) != spelt) ::_exit(1);
      ::_exit(failed ? 0 : 2);
    }
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 1);
    EXPECT_TRUE(status == 0 || n > 40);
  }
}

INSTANTIATE_TEST_SUITE_P(, FirstCall,
                         testing::Values("SJIS", "CP437", "CP850", "windows-1252", "EUC-JP", "EUC-KR", "Big5",
                                         "IBM-037", "KOI8-U", "ISO-8859-5", "GBK", "UTF-32", "ISO-2022-KR",
                                         "macintosh", "TIS-620", "windows-1258"),
                         [](const auto& test) { return test_name(test.param); });

constexpr void (QARContext::*set_key[])(const QARByteArray&) = {
    &QARContext::setTarvoKey, &QARContext::setCompilerKey, &QARContext::setSolutionKey,
    &QARContext::setEncSolutionKey, &QARContext::setEncKeyHash};

struct Copying final : QARTransform {
  bool cleanup() override { return true; }
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData&) override { return filter(in, out); }
};

const std::u16string replaced = u"b" + long_name;

// The objects that the operations use.
struct World {
  explicit World(const std::string& locale) {
    ZrLocale::global(ZrLocale(locale));
    for (char16_t first = u'a'; first <= u'z'; ++first) {
      data.addFileMapEntry(first + long_name, long_name, true);
      data.addRootMacroMapEntry(first + long_name, first + long_name);
      data.addTarvoPathEntry(first + long_name);
      data.addClassPathEntry(first + long_name);
    }
    factory.addFileTypeHandler({u".t", u".qvz"}, new Copying);
  }

  std::string seen() {
    using qardatainterfaces::seen;
    auto rest = data;
    rest.getFileMap().erase(replaced);  // which the operation may have removed
    return made + seen(units) + seen(bytes) + seen(meta) + seen(record) + seen(context) + seen(rest) + read() +
           ZrLocale::global().name() + (factory.willBeTransformed(u"x.a") ? "handled" : "not");
  }

  // The chunk that was read, and the rest of the content.
  std::string read() {
    if (!reader) return "";
    auto all = std::to_string(count) + buffer.substr(0, count);
    all += std::to_string(reader->lastError()) + std::to_string(reader->ready());
    all += text(reader->readAll());
    return all + chunk(*reader, 10);
  }

  QARByteArray bytes{std::string("before")};
  QARMetaData meta{true, "short"};
  QARRecordData record{u"a", true, "b"};
  QARContext context;
  QARData data;
  std::string made, buffer;
  std::u16string units;
  QARFileReaderFactory factory;
  std::unique_ptr<HostileStream> stream;
  std::unique_ptr<QARFileReader> reader;
  unsigned int count = 0;
};

struct Operation {
  std::string name;
  std::function<void(World&)> work;
  std::string locale = "C", error = {};
  std::function<void(World&)> prepare = {};
};
void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

// Runs an operation in a directory of its own.
class OutOfMemory : public testing::TestWithParam<Operation> {
protected:
  OutOfMemory() {
    std::filesystem::current_path(directory.native(""));
    for (const auto* const name : {"plain", "ä.t", "x.qvz"}) directory.file(name, file_content);
    directory.link("link", "tärget" + std::string(200, 't'));
  }

  static std::unique_ptr<World> make_world() {
    auto world = std::make_unique<World>(GetParam().locale);
    if (GetParam().prepare) GetParam().prepare(*world);
    return world;
  }

  // The n-th allocation fails, and every `period`-th one after it.
  static void fail_each_allocation(std::size_t period) {
    const auto& operation = GetParam();
    const bool keeps = !operation.prepare;  // operations on a reader change its state
    auto reference = make_world();
    const auto before = keeps ? reference->seen() : "";
    operation.work(*reference);
    const auto after = reference->seen();
    bool failed = true;
    for (std::size_t n = 1; failed && !HasFailure(); ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n) + ", period " + std::to_string(period));
      const auto live = Allocator::so_far().live;
      {
        const auto world = make_world();
        const bool through = attempt([&] { operation.work(*world); }, n, period, operation.error, failed);
        ASSERT_TRUE(through || failed);
        EXPECT_TRUE(through || !keeps || world->seen() == before);
        if (!through) operation.work(*world);
        EXPECT_EQ(world->seen(), after);
      }
      EXPECT_EQ(Allocator::so_far().live, live) << "leaked";
    }
  }

  const TemporaryDirectory directory;
  const CapturedOutput output;
};

TEST_P(OutOfMemory, LeavesEverythingUnchanged) {
  for (const std::size_t period : {0U, 1U, 5U}) fail_each_allocation(period);
  EXPECT_GT(Allocator::so_far().failed, 0U) << "no allocation";
}

std::string name_of(const testing::TestParamInfo<Operation>& test) { return test_name(test.param.name); }

// Arguments of the operations. Their texts are too long to be stored without an allocation.
struct Others {
  Others() {
    context.setVersionInfo(long_text.c_str());
    for (const auto set : set_key) (context.*set)(bytes);
    data.addFileMapEntry(long_name, long_name, true);
    data.addClassPathEntry(long_name);
  }
  QARByteArray bytes{long_text};
  QARMetaData meta{false, long_text};
  QARRecordData record{long_name, false, long_text};
  QARContext context;
  QARData data;
};

std::vector<Operation> on_values() {
  static Others other;
  std::vector<Operation> operations = {
      {"array", [](World& w) { w.bytes = QARByteArray(long_text); }},
      {"array copied", [](World& w) { w.made = text(QARByteArray(other.bytes)); }},
      {"array assigned", [](World& w) { w.bytes = other.bytes; }},
      {"metadata", [](World& w) { w.meta = QARMetaData(false, long_text); }},
      {"metadata copied", [](World& w) { w.meta = QARMetaData(other.meta); }},
      {"metadata assigned", [](World& w) { w.meta = other.meta; }},
      {"user data", [](World& w) { w.made = other.meta.getUserData(); }},
      {"user data set", [](World& w) { w.meta.setUserData(long_text); }},
      {"record", [](World& w) { w.record = QARRecordData(long_name, false, long_text); }},
      {"record copied", [](World& w) { w.record = QARRecordData(other.record); }},
      {"record assigned", [](World& w) { w.record = other.record; }},
      {"record's name", [](World& w) { w.units = other.record.getName(); }},
      {"record named", [](World& w) { w.record.setName(long_name); }},
      {"record's user data", [](World& w) { w.made = other.record.getUserData(); }},
      {"record's user data set", [](World& w) { w.record.setUserData(long_text); }},
      {"version", [](World& w) { w.made = other.context.getVersionInfo(); }},
      {"version set", [](World& w) { w.context.setVersionInfo(long_text.c_str()); }},
      {"context copied", [](World& w) { w.made = QARContext(other.context).getVersionInfo(); }},
      {"context assigned", [](World& w) { w.context = other.context; }},
      {"catalogue copied", [](World& w) { w.made = QARData(w.data).existEntry(replaced) ? "copied" : "lost"; }},
      {"catalogue assigned", [](World& w) { w.data = other.data; }},
      {"catalogue filled", [](World& w) { QARData(w.data) = w.data; }},
      {"Tarvo path", [](World& w) { w.data.addTarvoPathEntry(long_name); }},
      {"class path", [](World& w) { w.data.addClassPathEntry(long_name); }},
      {"macro", [](World& w) { w.data.addRootMacroMapEntry(long_name, long_name); }},
      {"macro anew", [](World& w) { w.data.addRootMacroMapEntry(replaced, long_name); }},
      {"entry", [](World& w) { w.data.addFileMapEntry(long_name, long_name, true); }},
      {"entry anew", [](World& w) { w.data.addFileMapEntry(u"a" + long_name, u"1" + long_name, false); }},
      {"entry replaced", [](World& w) { w.data.replaceFileMapEntry(replaced, long_name, long_name); }}};
  for (const auto set : set_key)
    operations.push_back(
        {"key " + std::to_string(operations.size()), [set](World& w) { (w.context.*set)(other.bytes); }});
  return operations;
}
INSTANTIATE_TEST_SUITE_P(Values, OutOfMemory, testing::ValuesIn(on_values()), name_of);

std::vector<Operation> of_the_platform() {
  using traits = ku::filesystem::detail::process_code_traits;
  const std::u16string odd = u"äΩ\uFFFF😀" + long_name;
  const std::string path = "äΩ\uFFFF😀" + std::string(100, 'n'), locale = "de_DE.KOI8-R@" + long_text;
  std::vector<Operation> operations = {
      {"locale", [=](World& w) { w.made = ZrLocale(locale).name(); }},
      {"global locale", [=](World& w) { w.made = ZrLocale::global().name(); }, locale},
      {"global locale set", [=](World&) { ZrLocale::global(ZrLocale(locale)); }},
      {"text", [=](World& w) { w.made = ku::i18n::to_string(odd); }},
      {"path", [=](World& w) { w.made = traits::to_external(odd); }},
      {"path back", [=](World& w) { w.units = traits::to_internal(path); }},
      {"name", [=](World& w) { w.units = QARPath::fromNative(path + '\xFF'); }},
      {"name back", [=](World& w) { w.made = QARPath::toNative(odd + u'\xDCFF'); }},
      {"ASCII", [=](World& w) { w.units = ku::i18n::codecvt_ascii_to_ustring().convert(&long_text[0], 99); }}};
  for (const std::string encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16", "UTF-7"})
    for (const bool tolerant : {false, true}) {
      const auto encode = [=](World& w) {
        w.made = ku::i18n::codecvt_ustring_to_string(encoding, tolerant).convert(&long_name[0], long_name.size());
      };
      const auto decode = [=](World& w) {
        w.units = ku::i18n::codecvt_string_to_ustring(encoding, tolerant).convert(&long_text[0], long_text.size());
      };
      operations.push_back({(tolerant ? "tolerantly to " : "to ") + encoding, encode});
      operations.push_back({(tolerant ? "tolerantly from " : "from ") + encoding, decode});
    }
  const QARDATAINTERFACES_FILE_OPEN_FAILED id(long_text, "\xC3\xA4" + long_text);
  for (const std::string language : {"C", "de", "fr", "es", "ja", "zh", "xx", "x23456789012345678901234567890"}) {
    const auto message = [=](World& w) { w.units = ku::i18n::MessageCatalog::get_message(id, ZrLocale::global()); };
    const auto raised = [=](World& w) {
      const DeployedException error(id), copied(error);
      w.made = is_named(error, id.name()) && is_named(copied, id.name()) ? "named" : "not named";
    };
    operations.push_back({"message in " + language, message, language});
    operations.push_back({"raised in " + language, raised, language});
  }
  return operations;
}
INSTANTIATE_TEST_SUITE_P(Platform, OutOfMemory, testing::ValuesIn(of_the_platform()), name_of);

std::vector<Operation> of_transforms() {
  const std::pair<std::string, std::string> texts[] = {
      {" plain", "plain"}, {" long", pattern(50000)}, {" odd", "\xC3\xA4\xE3\x81\x82 \xFF" + long_text}};
  std::vector<Operation> operations;
  for (const std::string encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16BE"})
    for (const auto& [name, text] : texts) {
      const QARByteArray in(text);
      const auto decode = [=](World& w) { LCPToUTF8Transform().transform(in, w.bytes, w.meta); };
      const auto encode = [=](World& w) { UTF8ToLCPTransform().transform(in, w.bytes, w.meta); };
      const auto report = [=](World& w) { Reporting(encoding, "US-ASCII").transform(in, w.bytes, w.meta); };
      operations.push_back({"reported from " + encoding + name, report, "C", conversion_failed});
      operations.push_back({"from " + encoding + name, decode, "C." + encoding, conversion_failed});
      operations.push_back({"to " + encoding + name, encode, "C." + encoding, conversion_failed});
    }
  return operations;
}
INSTANTIATE_TEST_SUITE_P(Transforms, OutOfMemory, testing::ValuesIn(of_transforms()), name_of);

// Only a failure of a strict stage is a `DeployedException`. First the single pass fails, then each allocation of the
// two stages.
TEST(Transforms, ThrowBadAllocFromATolerantStage) {
  const ContentLocale locale("KOI8-R");
  const QARByteArray in("\xE6\x97\xA5" + long_text);
  int tolerant = 0;
  bool through = false;
  for (std::size_t period = 1; !through; ++period) {
    const CapturedOutput output;
    const auto before = Allocator::so_far().failed;
    QARByteArray out;
    QARMetaData meta;
    Allocator::fail_at(1, period);
    try {
      UTF8ToLCPTransform().transform(in, out, meta);
      Allocator::stop_failing();
      through = Allocator::so_far().failed - before == 1;  // without memory for the notice, the operation goes on
    } catch (const DeployedException&) {
      Allocator::stop_failing();
      EXPECT_EQ(output.text(), "") << period;
    } catch (const std::bad_alloc&) {
      Allocator::stop_failing();
      tolerant += output.text().empty() ? 0 : 1;
    }
  }
  EXPECT_GT(tolerant, 0);
}

// The error for a path that cannot be opened contains the path if there is memory for it.
void open(World& w, const std::u16string& path, bool runtime) try {
  const auto reader = runtime ? w.factory.getRuntimeReader(path) : w.factory.getReader(path);
  w.made = reader->getTransformId() + text(reader->readAll());
} catch (const std::bad_alloc&) {
  throw;
} catch (const DeployedException& e) {
  w.made = e.identifier() == e.what() || std::strchr(e.what(), '/') != nullptr ? "refused" : "not named";
} catch (const std::exception&) {
  w.made = "refused";
}

std::vector<Operation> of_readers() {
  const std::vector<std::u16string> extensions{u".a", u"." + long_name};
  const auto add = [=](World& w) {
    auto* const transform = new LCPToUTF8Transform;  // this may fail, too
    w.factory.addFileTypeHandler(extensions, transform);
  };
  std::vector<Operation> operations = {{"handler", add}};
  const std::pair<std::string, std::u16string> paths[] = {
      {"a file", u"./plain"}, {"a transformed file", u"./ä.t"},
      {"a link", u"./link"},  {"a missing file", u"./ä"},
      {"a directory", u"./"}, {"too long a name", u"./" + std::u16string(300, u'x')}};
  for (const auto& [name, path] : paths)
    for (const bool runtime : {false, true})
      operations.push_back(
          {(runtime ? "open at run time " : "open ") + name, [=, path = path](World& w) { open(w, path, runtime); }});
  using Make = std::function<std::unique_ptr<QARFileReader>(World&)>;
  const auto on_stream = [](const std::u16string& path) -> Make {
    return [=](World& w) {
      w.stream = std::make_unique<HostileStream>(file_content, HostileStream::Manners{7000});
      return w.factory.getReader(path, *w.stream);
    };
  };
  const auto on_file = [](const std::u16string& path) -> Make {
    return [=](World& w) { return w.factory.getReader(path); };
  };
  const struct {
    std::string name;
    Make make;
    bool transforms, buffers_chunks;
  } readers[] = {
      {"a file", on_file(u"plain"), false, true},
      {"a transformed file", on_file(u"ä.t"), true, true},
      {"a transformed path", on_file(u"x.qvz"), true, true},
      {"a link", on_file(u"link"), false, true},
      {"a stream", on_stream(u"stream"), false, false},
      {"a transformed stream", on_stream(u"stream.t"), true, true},
      {"a pipe", [](World& w) { return w.factory.getRuntimeReader(Pipe(file_content).path()); }, false, true}};
  for (const auto& [name, make, transforms, buffers_chunks] : readers)
    for (const bool has_begun : {false, true}) {
      if (has_begun && transforms) continue;  // all memory is there
      const auto prepare = [=, make = make](World& w) {
        w.reader = make(w);
        w.buffer.resize(131072);
        if (has_begun) w.reader->read(w.buffer.data(), 10);
      };
      const auto of = " of " + name + (has_begun ? " after a chunk" : "");
      // The larger size gets fewer bytes from one call than requested, and then fills the look-ahead for the rest.
      for (const unsigned int size : {50000U, 131072U}) {
        if (has_begun || !buffers_chunks) continue;
        const auto chunk = [size](World& w) { w.count = w.reader->read(w.buffer.data(), size); };
        operations.push_back({std::to_string(size) + " bytes" + of, chunk, "C", "", prepare});
      }
      operations.push_back({"the whole" + of, [](World& w) { w.reader->readAll(); }, "C", "", prepare});
      operations.push_back(
          {"whole and metadata" + of, [](World& w) { w.reader->readAll(w.meta); }, "C", "", prepare});
    }
  return operations;
}
INSTANTIATE_TEST_SUITE_P(Readers, OutOfMemory, testing::ValuesIn(of_readers()), name_of);

}  // namespace
}  // namespace Korvane::qardatainterfaces
