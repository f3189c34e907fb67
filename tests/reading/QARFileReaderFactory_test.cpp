#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/environment.hpp"

#include <gmock/gmock.h>
#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <boost/filesystem/exception.hpp>

#include <cstring>
#include <map>

#include <sys/fsuid.h>
#include <sys/stat.h>

namespace Korvane::qardatainterfaces {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

// The extensions, of all that the path might have, with which a registration matches.
std::u16string matching(const std::u16string& path) {
  std::u16string result;
  for (std::size_t from = 0; from <= path.size(); ++from) {
    const auto extension = from == path.size() ? u"."s : path.substr(from);
    if (from + 1 == path.size() && extension == u".") continue;  // once is enough
    QARFileReaderFactory factory;
    factory.addFileTypeHandler({u"", extension}, new ScriptedTransform(ScriptedTransform::copy));
    if (factory.willBeTransformed(path)) result += extension;
  }
  return result;
}

TEST(QARFileReaderFactory, TakesTheExtensionFromTheLastDotOfTheLastElement) {
  const std::map<std::u16string, std::vector<std::u16string>> cases = {
      {u"",
       {u"", u"README", u"a.b/README", u"/", u"//", u"///", u"//name.x/", u"//name.x//", u"//:/", u"//:", u"a.x//:b",
        u"a.y\0b.x"s}},
      {u".", {u"notes.", u"dir/", u"dir.x/", u"a//", u"a/..", u"//name.x/a/", u"///name.x/"}},
      {u".x", {u"/.x", u"a.y.x", u"src/lib.y/a.x", u"//name.x", u"//na.me/b.x", u"//:a.x"}},
      {u".profile", {u"home/.profile"}},
      {u".c\\d", {u"a\\b.c\\d"}},
      {u".\u65E5\xD800", {u"a.\u65E5\xD800"}}};
  for (const auto& [extension, paths] : cases)
    for (const auto& path : paths) EXPECT_EQ(matching(path), extension) << testing::PrintToString(path);
}

TEST(QARFileReaderFactory, ChoosesTheEarliestRegistrationAndDestroysAllInTheirOrder) {
  std::string destroyed;
  auto factory = std::make_unique<QARFileReaderFactory>();
  const auto add = [&](const std::vector<std::u16string>& extensions, const std::string& name) {
    const std::shared_ptr<void> token(nullptr, [&destroyed, name](void*) { destroyed += name; });
    const auto give_name = [token, name](const QARByteArray&, QARByteArray& out, QARMetaData&) {
      return out = name, true;
    };
    factory->addFileTypeHandler(extensions, new ScriptedTransform(give_name));
  };
  add({}, "0");
  factory->addFileTypeHandler({u".m", u".null"}, nullptr);
  add({u"txt", u"", u".tar.gz"}, "1");
  add({u".txt", u".m"}, "2");
  add({u".m", u".late"}, "3");
  const TemporaryDirectory directory;
  const std::string cases[][2] = {{"x.txt", "2"},   {"x.m", "2"},   {"x.late", "3"},    {"x.null", "raw"},
                                  {"x.TXT", "raw"}, {"txt", "raw"}, {"x.tar.gz", "raw"}};
  for (const auto& [name, expected] : cases) {
    SCOPED_TRACE(name);
    const auto path = directory.file(name, "raw");
    HostileStream stream("raw");
    EXPECT_EQ(text(factory->getReader(path)->readAll()), expected);
    EXPECT_EQ(text(factory->getRuntimeReader(path)->readAll()), expected);
    EXPECT_EQ(text(factory->getReader(u"no such/" + path, stream)->readAll()), expected);
    EXPECT_EQ(factory->willBeTransformed(u"no such/" + path), expected != "raw");
  }
  const auto link = directory.link("link.m", "x.txt");
  EXPECT_TRUE(factory->willBeTransformed(link));
  EXPECT_EQ(text(factory->getReader(link)->readAll()), "x.txt");
  EXPECT_EQ(text(factory->getRuntimeReader(link)->readAll()), "2") << "followed";
  EXPECT_EQ(destroyed, "");
  factory.reset();
  EXPECT_EQ(destroyed, "0123");
}

const std::string not_exist = "QARDATAINTERFACES_FILE_NOT_EXIST";
const std::string not_supported = "QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED";
const std::string open_failed = "QARDATAINTERFACES_FILE_OPEN_FAILED";

std::string query_failed(int error) { return "boost::filesystem::is_symlink: "s + std::strerror(error); }

// What comes of asking for a reader: its content, the message it raises, or the query that failed and why.
std::string outcome(std::u16string path, bool runtime) try {
  QARFileReaderFactory factory;
  return text((runtime ? factory.getRuntimeReader(path) : factory.getReader(path))->readAll());
} catch (const rtxi18nutil::DeployedException& exception) {
  std::replace(path.begin(), path.end(), u'\0', u'\uFFFD');
  EXPECT_THAT(exception.what(), HasSubstr(ku::i18n::to_string(path)));
  EXPECT_EQ(std::strstr(exception.what(), ": file is closed.failbit is set.") != nullptr,
            exception.identifier() == open_failed);
  return exception.identifier();
} catch (const boost::filesystem::filesystem_error& error) {
  return std::string(error.what(), std::strstr(error.what(), ": \""));
}

TEST(QARFileReaderFactory, AnswersForEveryKindOfPath) {
  const TemporaryDirectory directory;
  const auto in = [&](const std::string& name) { return directory.path(name); };
  const auto file = directory.file("file", "content"), secret = directory.file("secret", "");
  const auto dangling = directory.link("dangling", "nowhere"), loop = directory.link("loop", "loop");
  directory.link("root", "/");
  ::chmod(directory.native("secret").c_str(), 0);
  ::mkdir(directory.native("locked").c_str(), 0600);
  ::mkfifo(directory.native("fifo").c_str(), 0600);
  ::mknod(directory.native("socket").c_str(), S_IFSOCK | 0600, 0);
  struct {
    std::string reader, runtime_reader;
    std::vector<std::u16string> paths;
  } const cases[] = {
      {"content", "content", {file, in("root") + file, file + u"\0.gz"s, u"//:" + file}},
      {not_exist, open_failed, {in("missing\xE6\x97\xA5"), in("file/below"), in("file/"), u"", u"\0file"s}},
      {not_supported, open_failed, {in(""), in("root/"), in("socket")}},
      {not_supported, "", {u"/dev/null"}},
      {"nowhere", open_failed, {dangling, u"//:" + dangling + u"\0x"s}},
      {"loop", open_failed, {loop}},
      {open_failed, open_failed, {secret}},
      {query_failed(ELOOP), open_failed, {loop + u"/x"}},
      {query_failed(EACCES), open_failed, {in("locked/x")}},
      {query_failed(ENAMETOOLONG), open_failed, {in(std::string(256, 'n'))}},
      {query_failed(EILSEQ), open_failed, {file + u'\xD800', u'\xDC00' + file}}};
  const auto before = ::setfsuid(65534);  // the superuser is never denied anything
  for (const auto& [reader, runtime_reader, paths] : cases)
    for (const auto& path : paths) {
      SCOPED_TRACE(testing::PrintToString(path));
      EXPECT_EQ(outcome(path, false), reader);
      EXPECT_EQ(outcome(path, true), runtime_reader);
    }
  ::setfsuid(static_cast<uid_t>(before));
  EXPECT_EQ(outcome(in("fifo"), false), not_supported) << "without waiting for a writer";
}

TEST(QARFileReaderFactory, OpensNoOtherFileThanTheOneThatIsNamed) {
  in_environment({{"LC_ALL", "en_US.ISO-8859-1"}}, [] {
    const TemporaryDirectory directory;
    EXPECT_EQ(outcome(directory.file("\xE9", "e"), false), "e");
    EXPECT_EQ(outcome(directory.path("") + u"\u00E9", true), "e");
    EXPECT_EQ(outcome(directory.link("\xFC", "\xE9\xFF"), false), "\xE9\xFF");
    for (const auto* const similar : {"?", "e", "\x1A"}) directory.file(similar, "another file");
    for (const auto& name : {directory.path("") + u"\u65E5", directory.path("") + u"e\u0301"}) {
      EXPECT_EQ(outcome(name, false), query_failed(EILSEQ));
      EXPECT_EQ(outcome(name, true), open_failed);
    }
  });
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
