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

/// For what makes something new.
template <class Make, class Observe>
void torture_making(const std::string& name, Make make, Observe observe, const std::string& error = "") {
  using Made = decltype(make());
  torture(
      name, [] { return std::unique_ptr<Made>(); }, [&](auto& made) { made = std::make_unique<Made>(make()); },
      [&](auto& made) { return made ? observe(*made) : std::string("nothing"); }, error);
}

std::string same(const std::string& text) { return text; }
std::string narrow(const std::u16string& text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}
std::string seen(QARMetaData& meta) { return meta.getUserData() + (meta.isDemo() ? "+" : "-"); }
std::string seen(QARRecordData& record) { return narrow(record.getName()) + seen(record.getMetaData()); }
std::string seen(QARByteArray& bytes) { return text(bytes) + (bytes.begin() == nullptr ? "0" : "1"); }
std::string seen(QARContext& c) {
  return c.getVersionInfo() + seen(c.getTarvoKey()) + seen(c.getCompilerKey()) + seen(c.getSolutionKey()) +
         seen(c.getEncSolutionKey()) + seen(c.getEncKeyHash());
}
std::string seen(QARData& data) {
  std::string all;
  for (auto& [name, record] : data.getFileMap()) all += narrow(name) + "=" + seen(record) + ";";
  for (auto& [name, value] : data.getRootMacroMap()) all += narrow(name) + "=" + narrow(value) + ";";
  for (auto& path : data.getTarvoPathVector()) all += narrow(path) + ":";
  for (auto& path : data.getClassPathVector()) all += narrow(path) + ";";
  return all;
}
const auto see = [](auto& object) { return seen(object); };

const std::string long_text(100, 'x');
const std::u16string long_name(100, u'n');

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
      attempt(work, n, n % 2 == 0, "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER", failed);
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

TEST(OutOfMemory, LeavesValuesAsTheyWere) {
  const QARByteArray bytes(long_text);
  torture_making(
      "array of bytes", [] { return QARByteArray(std::string("ab")); }, see);
  torture_making(
      "array copied", [&] { return QARByteArray(bytes); }, see);
  torture(
      "array assigned", [] { return QARByteArray(std::string("ab")); }, [&](auto& a) { a = bytes; }, see);

  const QARMetaData meta(false, long_text);
  torture_making(
      "metadata copied", [&] { return QARMetaData(meta); }, see);
  torture_making(
      "user data", [&] { return meta.getUserData(); }, same);
  const auto make_meta = [] { return QARMetaData(true, "short"); };
  torture(
      "metadata assigned", make_meta, [&](auto& m) { m = meta; }, see);
  torture(
      "user data set", make_meta, [&](auto& m) { m.setUserData(long_text); }, see);

  const QARRecordData record(long_name, false, long_text);
  torture_making(
      "record", [&] { return QARRecordData(long_name, false, long_text); }, see);
  torture_making(
      "record copied", [&] { return QARRecordData(record); }, see);
  torture_making(
      "record's name", [&] { return record.getName(); }, narrow);
  torture_making(
      "record's user data", [&] { return record.getUserData(); }, same);
  const auto make_record = [] { return QARRecordData(u"a", true, "b"); };
  torture(
      "record assigned", make_record, [&](auto& r) { r = record; }, see);
  torture(
      "record named", make_record, [&](auto& r) { r.setName(long_name); }, see);
  torture(
      "record's user data set", make_record, [&](auto& r) { r.setUserData(long_text); }, see);
}

TEST(OutOfMemory, LeavesContainersAsTheyWere) {
  const QARByteArray key(long_text);
  void (QARContext::*const setters[])(const QARByteArray&) = {
      &QARContext::setTarvoKey, &QARContext::setCompilerKey, &QARContext::setSolutionKey,
      &QARContext::setEncSolutionKey, &QARContext::setEncKeyHash};
  QARContext context;
  context.setVersionInfo(long_text.c_str());
  for (const auto set : setters) (context.*set)(key);
  for (const auto set : setters)
    torture(
        "key set", [] { return QARContext(); }, [&](auto& c) { (c.*set)(key); }, see);
  torture(
      "version set", [] { return QARContext(); }, [&](auto& c) { c.setVersionInfo(long_text.c_str()); }, see);
  torture_making(
      "version", [&] { return context.getVersionInfo(); }, same);
  torture_making(
      "context copied", [&] { return QARContext(context); }, see);
  torture(
      "context assigned", [] { return QARContext(); }, [&](auto& c) { c = context; }, see);

  QARData data;
  for (char16_t c = u'a'; c <= u'z'; ++c) {
    data.addFileMapEntry(c + long_name, long_name, true);
    data.addRootMacroMapEntry(c + long_name, c + long_name);
    data.addTarvoPathEntry(c + long_name);
    data.addClassPathEntry(c + long_name);
  }
  torture_making(
      "catalogue copied", [&] { return QARData(data); }, see);
  const auto make = [&] { return QARData(data); };
  torture(
      "catalogue assigned", make, [other = QARData()](auto& d) { d = other; }, see);
  torture(
      "catalogue filled", [] { return QARData(); }, [&](auto& d) { d = data; }, see);
  torture(
      "Tarvo path", make, [](auto& d) { d.addTarvoPathEntry(long_name); }, see);
  torture(
      "class path", make, [](auto& d) { d.addClassPathEntry(long_name); }, see);
  torture(
      "macro", make, [](auto& d) { d.addRootMacroMapEntry(u"1" + long_name, long_name); }, see);
  torture(
      "macro anew", make, [](auto& d) { d.addRootMacroMapEntry(u"a" + long_name, u"1" + long_name); }, see);
  torture(
      "entry", make, [](auto& d) { d.addFileMapEntry(u"1" + long_name, long_name, true); }, see);
  torture(
      "entry anew", make, [](auto& d) { d.addFileMapEntry(u"a" + long_name, u"1" + long_name, false); }, see);
  const std::u16string old_name = u"c" + long_name, new_name = u"1" + long_name;
  torture(
      "entry replaced", make, [&](auto& d) { d.replaceFileMapEntry(old_name, new_name, long_name); },
      [&](QARData& d) {  // the old entry may be gone
        QARData rest(d);
        rest.getFileMap().erase(old_name);
        return seen(rest);
      });
}

TEST(OutOfMemory, IsNeverTakenForAnythingElseByThePlatform) {
  namespace messages = qar::qardatainterfaces;
  const ku::i18n::ZrLocale locale("de_DE.KOI8-R@" + long_text);
  torture_making(
      "locale", [] { return ZrLocale("de_DE.KOI8-R@" + long_text).name(); }, same);
  torture_making(
      "global locale", [] { return ZrLocale::global().name(); }, same);
  torture(
      "global locale set", [] { return ZrLocale::global(ZrLocale("C")); },
      [&](const ZrLocale&) { ZrLocale::global(locale); }, [](const ZrLocale&) { return ZrLocale::global().name(); });
  ZrLocale::global(ZrLocale("C"));

  const std::u16string odd = u"\u00E4\u03A9\uFFFF\U0001F600" + long_name;
  torture_making(
      "text", [&] { return ku::i18n::to_string(odd); }, same);
  using traits = ku::filesystem::detail::process_code_traits;
  torture_making(
      "path", [&] { return traits::to_external(odd); }, same);
  torture_making(
      "path back", [&, path = traits::to_external(odd)] { return traits::to_internal(path); }, narrow);
  torture_making(
      "ASCII", [] { return ku::i18n::codecvt_ascii_to_ustring().convert(&long_text[0], 99); }, narrow);
  for (const auto* const encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16", "UTF-7", "HZ"})
    for (const bool tolerant : {false, true}) {
      const auto encode = [=](const std::u16string& text) {
        return ku::i18n::codecvt_ustring_to_string(encoding, tolerant).convert(text.data(), text.size());
      };
      const auto bytes = encode(long_name);
      torture_making(
          encoding, [&] { return encode(long_name); }, same);
      torture_making(
          encoding,
          [&] { return ku::i18n::codecvt_string_to_ustring(encoding, tolerant).convert(&bytes[0], bytes.size()); },
          narrow);
    }
  for (const std::string language : {"C", "de", "fr", "es", "ja", "zh", "xx", "x23456789012345678901234567890"}) {
    const messages::QARDATAINTERFACES_FILE_OPEN_FAILED id(long_text, "\xC3\xA4" + long_text);
    const ZrLocale its(language);
    torture_making(
        language, [&] { return ku::i18n::MessageCatalog::get_message(id, its); }, narrow);
    ZrLocale::global(its);
    torture_making(
        language + " raised", [&] { return DeployedException(id); },
        [&](const DeployedException& e) { return is_named(e, id.name()) ? std::string() : e.what(); });
    const DeployedException error(id);
    torture_making(
        language + " copied", [&] { return DeployedException(error); },
        [&](const DeployedException& e) { return is_named(e, id.name()) ? std::string() : e.what(); });
  }
  ZrLocale::global(ZrLocale("C"));
}

constexpr auto conversion_failed = "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER";

template <class Transform>
void torture_transform(const std::string& name, const std::string& from) {
  const QARByteArray in(from);
  const CapturedOutput output;
  const auto transform = [&](QARByteArray& out) {
    QARMetaData meta;
    Transform().transform(in, out, meta);
  };
  torture(
      name, [] { return QARByteArray(std::string("before")); }, transform, see, conversion_failed);
}

TEST(OutOfMemory, LeavesTheOutputOfATransformAsItWas) {
  for (const auto* const encoding : {"UTF-8", "KOI8-R", "SJIS", "ISO-2022-JP", "GB18030", "UTF-16BE"}) {
    const ContentLocale locale(encoding);
    for (const std::string& text : {std::string("plain"), pattern(50000), "\xC3\xA4\xE3\x81\x82 \xFF" + long_text}) {
      torture_transform<LCPToUTF8Transform>(encoding, text);
      torture_transform<UTF8ToLCPTransform>(encoding, text);
    }
  }
}

TEST(OutOfMemory, IsForgottenWhenAnEncodingIsMetForTheFirstTime) {
  for (const std::string encoding :
       {"CP437", "CP850", "windows-1252", "EUC-JP", "EUC-KR", "Big5", "IBM-037", "KOI8-U", "ISO-8859-5", "GBK",
        "UTF-32", "ISO-2022-KR", "macintosh", "TIS-620"}) {
    const ContentLocale locale(encoding);
    const auto text = pattern(3000);
    bool failed = true;
    QARByteArray out;
    for (std::size_t n = 1; failed; ++n) {
      SCOPED_TRACE(encoding + ' ' + std::to_string(n));
      const QARByteArray in(text);
      QARMetaData unused;
      const CapturedOutput output;
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

class OutOfMemoryReading : public testing::Test {
protected:
  OutOfMemoryReading() { factory.addFileTypeHandler({u".t"}, new Copying); }
  TemporaryDirectory directory;
  QARFileReaderFactory factory;
};

TEST_F(OutOfMemoryReading, LeavesTheFactoryAsItWas) {
  const auto is = [](bool handled) { return std::string(handled ? "handled" : "not"); };
  const std::vector<std::u16string> extensions{u".a", u"." + long_name};
  torture(
      "handler added", [] { return std::make_unique<QARFileReaderFactory>(); },
      [&](auto& f) {
        const auto armed = new LCPToUTF8Transform();  // which may fail itself
        f->addFileTypeHandler(extensions, armed);
      },
      [&](auto& f) { return is(f->willBeTransformed(u"x.a")); });

  const auto identify = [](std::unique_ptr<QARFileReader>& r) { return r->getTransformId() + text(r->readAll()); };
  const auto link = directory.link("link", "tärget");
  for (const auto& path : {directory.file("ä.t", long_text), directory.file("plain", long_text), link})
    torture_making(
        "reader", [&] { return factory.getReader(path); }, identify);
  torture_making(
      "runtime reader", [&] { return factory.getRuntimeReader(directory.path("ä.t")); }, identify);
  for (const auto& path : {directory.path("ä"), directory.path(""), directory.path(std::string(300, 'x'))})
    for (const bool runtime : {false, true})
      torture_making(
          "no reader",
          [&] {
            try {
              runtime ? factory.getRuntimeReader(path) : factory.getReader(path);
            } catch (const std::bad_alloc&) {
              throw;
            } catch (const DeployedException& e) {
              return e.identifier() == e.what() || std::string(e.what()).find('/') != std::string::npos;
            } catch (const std::exception&) {
              return true;
            }
            return false;
          },
          is);
}

TEST_F(OutOfMemoryReading, LosesNothing) {
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
  const auto whole_meta = [](Reading& r) {
    QARMetaData meta;
    r.reader->readAll(meta);
  };
  const auto rest = [](Reading& r) {
    std::string all = std::to_string(r.count) + r.buffer.substr(0, std::min(r.count, 50000U));
    all += std::to_string(r.reader->lastError()) + std::to_string(r.reader->ready());
    all += text(r.reader->readAll());
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
      for (const auto& read : {std::function<void(Reading&)>(whole), std::function<void(Reading&)>(whole_meta)})
        torture(
            name + " whole", [&] { return open(first); }, read,
            [&](Reading& r) {
              const auto all = rest(r);
              return all + qardatainterfaces::chunk(*r.reader, 10);
            },
            "", false);
    }
  }
}

const struct Report
    : testing::Environment{void TearDown() override{std::printf("%zu allocations failed\n", Faults::injected());
if (testing::GTEST_FLAG(filter) == "*") {
  EXPECT_GE(Faults::injected(), 5000U);
}
}  // namespace
}  // namespace Korvane::qardatainterfaces
*const report = static_cast<Report*>(testing::AddGlobalTestEnvironment(new Report));

}  // namespace
}  // namespace Korvane::qardatainterfaces
