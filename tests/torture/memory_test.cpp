// Each allocation of each operation fails once, alone and with all that follow.

#include "faults.hpp"
#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/HostileStream.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/content.hpp"

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARContext.hpp>
#include <qardatainterfaces/QARData.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

namespace Korvane::qardatainterfaces {
namespace {

using ku::i18n::ZrLocale;
using rtxi18nutil::DeployedException;

/// The names of the ids, or the texts if there was memory for them.
bool is_named(const DeployedException& error, const std::string& name) {
  return error.identifier() == name && (error.what() == name || std::string(error.what()).size() > 20);
}

/// Whether the operation got through. `error` is what a lack of memory may become besides `std::bad_alloc`.
template <class Work>
bool attempt(Work work, std::size_t n, bool lasting, const std::string& error, bool& failed) {
  bool through = false;
  std::optional<std::string> wrong;
  try {
    Faults::arm(n, lasting);
    work();
    failed = Faults::disarm();
    through = true;
  } catch (const std::bad_alloc&) {
    failed = Faults::disarm();
  } catch (const DeployedException& e) {
    failed = Faults::disarm();
    if (!is_named(e, error)) wrong = e.what();
  } catch (const std::exception& e) {
    failed = Faults::disarm();
    wrong = e.what();
  }
  if (wrong) ADD_FAILURE() << "raised: " << *wrong;
  return through;
}

/// `observe` tells what of the state a failed operation must leave as it was; after a successful one all of it
/// counts.
template <class Make, class Work, class Observe>
void torture(const std::string& name, Make make, Work work, Observe observe, const std::string& error = "",
             bool keeps = true) {
  auto reference = make();
  const auto before = keeps ? observe(reference) : std::string();  // the answers of a reader change it
  work(reference);
  const auto after = observe(reference);
  for (const bool lasting : {false, true}) {
    bool failed = true;
    for (std::size_t n = 1; failed; ++n) {
      SCOPED_TRACE(name + (lasting ? ", all from " : ", only ") + std::to_string(n));
      const auto live = Faults::live();
      {
        auto state = make();
        const bool through = attempt([&] { work(state); }, n, lasting, error, failed);
        ASSERT_TRUE(through || failed);
        if (!through && keeps) {
          EXPECT_EQ(observe(state), before);
        }
        if (!through) work(state);
        EXPECT_EQ(observe(state), after);
      }
      EXPECT_EQ(Faults::live(), live) << "leaked";
      if (testing::Test::HasFailure()) return;
    }
  }
}

const std::string long_text(100, 'x');
const std::u16string long_name(100, u'n');
constexpr auto conversion_failed = "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER";

std::string narrow(const std::u16string& text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}
std::string seen(const QARMetaData& meta) { return meta.getUserData() + (meta.isDemo() ? "+" : "-"); }
std::string seen(const QARRecordData& record) { return narrow(record.getName()) + seen(record.getMetaData()); }

/// One of each class: what an operation reads or makes ends in here.
struct Values {
  Values() {
    for (const char16_t c : {u'a', u'b', u'c', u'd'}) {
      data.addFileMapEntry(c + long_name, long_name, true);
      data.addRootMacroMapEntry(c + long_name, c + long_name);
      data.addTarvoPathEntry(c + long_name);
      data.addClassPathEntry(c + long_name);
    }
  }
  QARByteArray bytes = std::string("ab");
  QARMetaData meta{true, "short"};
  QARRecordData record{u"a", true, "b"};
  QARContext context;
  QARData data;
  std::string text;
  std::u16string name;
  std::optional<DeployedException> error;
  QARFileReaderFactory factory;
  std::unique_ptr<QARFileReader> reader;
};

std::string seen(Values& v) {
  auto all = text(v.bytes) + seen(v.meta) + seen(v.record) + v.context.getVersionInfo() + v.text + narrow(v.name);
  auto& c = v.context;
  for (auto* key :
       {&c.getTarvoKey(), &c.getCompilerKey(), &c.getSolutionKey(), &c.getEncSolutionKey(), &c.getEncKeyHash()})
    all += text(*key) + ',';
  for (auto& [name, record] : v.data.getFileMap()) all += narrow(name) + "=" + seen(record) + ";";
  for (auto& [name, value] : v.data.getRootMacroMap()) all += narrow(name) + "=" + narrow(value) + ";";
  for (auto* paths : {&v.data.getTarvoPathVector(), &v.data.getClassPathVector()})
    for (auto& path : *paths) all += narrow(path) + ":";
  if (v.error) all += is_named(*v.error, "QARDATAINTERFACES_FILE_OPEN_FAILED") ? "named" : v.error->what();
  if (v.factory.willBeTransformed(u"x.a")) all += "handled";
  if (v.reader) all += v.reader->getTransformId() + text(v.reader->readAll());
  return all + ZrLocale::global().name();
}

struct Row {
  std::string name;
  std::function<void(Values&)> work;
};

void torture(const Row& row, const std::string& error = "") {
  torture(
      row.name, [] { return Values(); }, row.work, [](Values& v) { return seen(v); }, error);
}

// First of all tests: each child process finds everything still to be set up, in ICU as well.
TEST(OutOfMemory, IsForgottenAfterTheVeryFirstCall) {
  using qar::qardatainterfaces::QARDATAINTERFACES_FILE_NOT_EXIST;
  int status = 0;
  for (std::size_t n = 1; WEXITSTATUS(status) == 0; ++n) {
    const auto child = ::fork();
    if (child == 0) {
      ::alarm(10);
      QARByteArray out;
      bool failed = true;
      const auto work = [&] {
        const ContentLocale locale("SJIS");
        QARMetaData meta;
        LCPToUTF8Transform().transform(QARByteArray(std::string("\x82\xA0")), out, meta);
        const DeployedException error(QARDATAINTERFACES_FILE_NOT_EXIST("path"));
        return is_named(error, "QARDATAINTERFACES_FILE_NOT_EXIST");
      };
      attempt(work, n, n % 2 == 0, conversion_failed, failed);
      ::_exit(!work() || text(out) != "\u3042" ? 1 : failed ? 0 : 2);
    }
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 1) << n;
    if (WEXITSTATUS(status) == 1) status = 0;
    if (WEXITSTATUS(status) == 2) {
      EXPECT_GT(n, 40U);
    }
  }
}

TEST(OutOfMemory, LeavesValuesAndContainersAsTheyWere) {
  const QARByteArray bytes(long_text);
  const QARMetaData meta(false, long_text);
  const QARRecordData record(long_name, false, long_text);
  const std::u16string old_name = u"c" + long_name, new_name = u"1" + long_name;
  QARContext context;
  QARData data;
  data.addFileMapEntry(old_name, new_name, true);
  context.setVersionInfo(long_text.c_str());
  context.setTarvoKey(bytes);
  context.setEncKeyHash(bytes);
  const Row rows[] = {{"array copied", [&](Values& v) { v.bytes = QARByteArray(bytes); }},
                      {"array assigned", [&](Values& v) { v.bytes = bytes; }},
                      {"metadata copied", [&](Values& v) { v.meta = QARMetaData(meta); }},
                      {"metadata assigned", [&](Values& v) { v.meta = meta; }},
                      {"user data", [&](Values& v) { v.text = meta.getUserData(); }},
                      {"user data set", [&](Values& v) { v.meta.setUserData(long_text); }},
                      {"record made", [&](Values& v) { v.record = QARRecordData(long_name, false, long_text); }},
                      {"record assigned", [&](Values& v) { v.record = record; }},
                      {"record's name", [&](Values& v) { v.name = record.getName(); }},
                      {"record named", [&](Values& v) { v.record.setName(long_name); }},
                      {"record's user data", [&](Values& v) { v.text = record.getUserData(); }},
                      {"record's user data set", [&](Values& v) { v.record.setUserData(long_text); }},
                      {"Tarvo key", [&](Values& v) { v.context.setTarvoKey(bytes); }},
                      {"compiler key", [&](Values& v) { v.context.setCompilerKey(bytes); }},
                      {"solution key", [&](Values& v) { v.context.setSolutionKey(bytes); }},
                      {"encrypted key", [&](Values& v) { v.context.setEncSolutionKey(bytes); }},
                      {"hash", [&](Values& v) { v.context.setEncKeyHash(bytes); }},
                      {"version set", [&](Values& v) { v.context.setVersionInfo(long_text.c_str()); }},
                      {"version", [&](Values& v) { v.text = context.getVersionInfo(); }},
                      {"context assigned", [&](Values& v) { v.context = context; }},
                      {"catalogue assigned", [&](Values& v) { v.data = data; }},
                      {"Tarvo path", [&](Values& v) { v.data.addTarvoPathEntry(long_name); }},
                      {"class path", [&](Values& v) { v.data.addClassPathEntry(long_name); }},
                      {"macro", [&](Values& v) { v.data.addRootMacroMapEntry(new_name, long_name); }},
                      {"macro anew", [&](Values& v) { v.data.addRootMacroMapEntry(old_name, new_name); }},
                      {"entry", [&](Values& v) { v.data.addFileMapEntry(new_name, long_name, true); }},
                      {"entry anew", [&](Values& v) { v.data.addFileMapEntry(old_name, new_name, false); }}};
  for (const auto& row : rows) torture(row);
  const auto replace = [&](Values& v) { v.data.replaceFileMapEntry(old_name, new_name, long_name); };
  const auto others = [&](Values& v) {  // the old entry may be gone
    Values rest;
    rest.data = v.data;
    rest.data.getFileMap().erase(old_name);
    return seen(rest);
  };
  torture(
      "entry replaced", [] { return Values(); }, replace, others);
}

TEST(OutOfMemory, IsNeverTakenForAnythingElseByThePlatform) {
  using ku::i18n::codecvt_string_to_ustring, ku::i18n::codecvt_ustring_to_string;
  using traits = ku::filesystem::detail::process_code_traits;
  const qar::qardatainterfaces::QARDATAINTERFACES_FILE_OPEN_FAILED id(long_text, "\xC3\xA4" + long_text);
  const std::u16string odd = u"\u00E4\u03A9\uFFFF\U0001F600" + long_name;
  const auto path = traits::to_external(odd);
  std::vector<Row> rows{
      {"locale", [](Values& v) { v.text = ZrLocale("de_DE.KOI8-R@" + long_text).name(); }},
      {"text", [&](Values& v) { v.text = ku::i18n::to_string(odd); }},
      {"path", [&](Values& v) { v.text = traits::to_external(odd); }},
      {"path back", [&](Values& v) { v.name = traits::to_internal(path); }},
      {"ASCII", [](Values& v) { v.name = ku::i18n::codecvt_ascii_to_ustring().convert(&long_text[0], 99); }}};
  for (const auto* const encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16", "UTF-7", "HZ"})
    for (const bool tolerant : {false, true}) {
      const auto bytes = codecvt_ustring_to_string(encoding, tolerant).convert(long_name.data(), 100);
      rows.push_back({encoding, [=](Values& v) {
                        v.text = codecvt_ustring_to_string(encoding, tolerant).convert(long_name.data(), 100);
                      }});
      rows.push_back({encoding, [=](Values& v) {
                        v.name = codecvt_string_to_ustring(encoding, tolerant).convert(&bytes[0], bytes.size());
                      }});
    }
  for (const auto& row : rows) torture(row);
  for (const std::string language : {"C", "de", "fr", "es", "ja", "zh", "xx", "x23456789012345678901234567890"}) {
    const ZrLocale its(language), before = ZrLocale::global(its);
    const DeployedException error(id);
    torture({language, [&](Values& v) { v.name = ku::i18n::MessageCatalog::get_message(id, its); }});
    torture({language + " raised", [&](Values& v) { v.error.emplace(id); }});
    torture({language + " copied", [&](Values& v) { v.error.emplace(error); }});
    ZrLocale::global(before);
  }
  const auto set = [its = ZrLocale("de_DE.KOI8-R@" + long_text)](ZrLocale&) { ZrLocale::global(its); };
  const auto global = [](ZrLocale&) { return ZrLocale::global().name(); };
  torture(
      "global locale", [] { return ZrLocale::global(ZrLocale("C")); }, set, global);
  ZrLocale::global(ZrLocale("C"));
}

template <class Transform>
void torture_transform(const std::string& name, const QARByteArray& in) {
  torture({name, [&](Values& v) { Transform().transform(in, v.bytes, v.meta); }}, conversion_failed);
}

TEST(OutOfMemory, LeavesTheOutputOfATransformAsItWas) {
  for (const auto* const encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16BE"}) {
    const ContentLocale locale(encoding);
    const CapturedOutput output;
    for (const std::string& text : {std::string("plain"), pattern(50000), "\xC3\xA4\xE3\x81\x82 \xFF" + long_text}) {
      torture_transform<LCPToUTF8Transform>(encoding, text);
      torture_transform<UTF8ToLCPTransform>(encoding, text);
    }
  }
}

TEST(OutOfMemory, IsForgottenWhenAnEncodingIsMetForTheFirstTime) {
  for (const std::string encoding :
       {"CP437", "windows-1252", "EUC-JP", "EUC-KR", "Big5", "IBM-037", "KOI8-U", "GBK", "UTF-32", "ISO-2022-KR"}) {
    const ContentLocale locale(encoding);
    const auto text = pattern(3000);
    bool failed = true;
    const QARByteArray in(text);
    QARByteArray out;
    QARMetaData unused;
    const CapturedOutput output;
    for (std::size_t n = 1; failed; ++n) {
      SCOPED_TRACE(encoding + ' ' + std::to_string(n));
      attempt([&] { LCPToUTF8Transform().transform(in, out, unused); }, n, n % 2 == 0, conversion_failed, failed);
    }
    const auto units = ku::i18n::codecvt_string_to_ustring(encoding, true).convert(&text[0], text.size());
    const auto utf8 = ku::i18n::codecvt_ustring_to_string("UTF-8", true).convert(units.data(), units.size());
    EXPECT_EQ(qardatainterfaces::text(out), utf8) << encoding;
  }
}

struct Copying final : QARTransform {
  bool cleanup() override { return true; }
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData&) override { return out = in, true; }
};

TEST(OutOfMemory, LeavesAFactoryAndItsCallerAsTheyWere) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t"}, new Copying);
  const std::vector<std::u16string> extensions{u".a", u"." + long_name};
  torture({"handler added", [&](Values& v) {
             const auto armed = new LCPToUTF8Transform();  // which may fail itself
             v.factory.addFileTypeHandler(extensions, armed);
           }});
  const auto odd = directory.file("\u00E4.t", long_text), link = directory.link("link", "t\u00E4rget");
  for (const auto& path : {odd, directory.file("plain", long_text), link})
    torture({"reader", [&](Values& v) { v.reader = factory.getReader(path); }});
  torture({"runtime reader", [&](Values& v) { v.reader = factory.getRuntimeReader(odd); }});
  for (const auto& path : {directory.path("\u00E4"), directory.path(""), directory.path(std::string(300, 'x'))})
    for (const bool runtime : {false, true})
      torture({"no reader", [&](Values& v) {
                 try {
                   runtime ? factory.getRuntimeReader(path) : factory.getReader(path);
                 } catch (const std::bad_alloc&) {
                   throw;
                 } catch (const std::exception& e) {
                   const auto* const raised = dynamic_cast<const DeployedException*>(&e);
                   const bool named = raised == nullptr || raised->identifier() == e.what();
                   v.text = named || std::strchr(e.what(), '/') != nullptr ? "none" : "what";
                 }
               }});
}

TEST(OutOfMemory, LosesNothingOfAReader) {
  const TemporaryDirectory directory;
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".t"}, new Copying);
  const auto content = pattern(100000);
  struct Reading {
    std::unique_ptr<HostileStream> stream;
    std::unique_ptr<QARFileReader> reader;
    std::string buffer;
    unsigned int count = 0;
  };
  const auto link = directory.link("link", std::string(200, 't'));
  const auto chunk = [](Reading& r) { r.count = r.reader->read(r.buffer.data(), 50000); };
  const auto whole = [](Reading& r) { r.reader->readAll(); };
  const auto rest = [](Reading& r) {
    std::string all = std::to_string(r.count) + r.buffer.substr(0, std::min(r.count, 50000U));
    all += std::to_string(r.reader->lastError()) + std::to_string(r.reader->ready()) + text(r.reader->readAll());
    return all;
  };
  for (const auto& path :
       {directory.file("plain", content), directory.file("x.t", content), link, directory.file("x.qvz", content),
        std::u16string(u"stream"), std::u16string(u"stream.t")}) {
    const auto open = [&](unsigned int first) {
      Reading r{nullptr, nullptr, std::string(50000, '?'), 0};
      if (path[0] == u's') r.stream = std::make_unique<HostileStream>(content, HostileStream::Manners{7000});
      r.reader = r.stream ? factory.getReader(path, *r.stream) : factory.getReader(path);
      std::string start(first, '\0');
      if (first > 0) r.reader->read(start.data(), first);
      return r;
    };
    const auto name = ku::i18n::to_string(path);
    for (const unsigned int first : {0U, 10U}) {
      torture(
          name + " chunk", [&] { return open(first); }, chunk, rest, "", false);
      torture(
          name + " whole", [&] { return open(first); }, whole,
          [&](Reading& r) { return rest(r) + qardatainterfaces::chunk(*r.reader, 10); }, "", false);
    }
  }
}

class Report : public testing::Environment {
  void TearDown() override {
    std::printf("%zu allocations failed\n", Faults::injected());
    if (testing::GTEST_FLAG(filter) == "*") {
      EXPECT_GE(Faults::injected(), 5000U);
    }
  }
};
const auto* const report = testing::AddGlobalTestEnvironment(new Report);

}  // namespace
}  // namespace Korvane::qardatainterfaces
