#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/environment.hpp"
#include "support/table.hpp"

#include <gmock/gmock.h>
#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/exception.hpp>

#include <algorithm>
#include <cstring>

#include <sys/fsuid.h>
#include <sys/stat.h>

namespace Korvane::qardatainterfaces {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

// The extensions that a registration may have to match the path, out of all candidates.
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

class Extensions : public RowTest {};

TEST_P(Extensions, AreTakenFromTheLastDotOfTheLastElement) { EXPECT_EQ(matching(row.units(1)), row.units(0)); }

INSTANTIATE_TEST_SUITE_P(, Extensions, testing::ValuesIn(table("tests/reading/extensions.txt")), RowTest::name);

TEST(QARFileReaderFactory, ChoosesTheEarliestRegistrationAndDestroysAllInTheirOrder) {
  std::string destroyed;
  auto factory = std::make_unique<QARFileReaderFactory>();
  const auto add = [&](const std::vector<std::u16string>& extensions, const std::string& name) {
    const std::shared_ptr<void> token(nullptr, [&destroyed, name](void*) { destroyed += name; });
    const auto give_name = [token, name](const QARByteArray&, QARByteArray& out, QARMetaData&) {
      out = name;
      return true;
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

// The result of getting a reader: its content, the message id of the exception, or the failed query; and the error.
std::string outcome(std::u16string path, bool runtime) try {
  QARFileReaderFactory factory;
  return text((runtime ? factory.getRuntimeReader(path) : factory.getReader(path))->readAll());
} catch (const rtxi18nutil::DeployedException& exception) {
  std::replace(path.begin(), path.end(), u'\0', u'\uFFFD');
  EXPECT_THAT(exception.what(), HasSubstr(ku::i18n::to_string(path)));
  const auto name = exception.identifier().substr(std::strlen("QARDATAINTERFACES_FILE_"));
  EXPECT_EQ(std::strstr(exception.what(), ": file is closed.failbit is set.") != nullptr, name == "OPEN_FAILED");
  return name + reason(exception);
} catch (const boost::filesystem::filesystem_error& error) {
  // The queried path: without the prefix "//:", up to the first zero.
  const std::u16string queried = path.substr(path.compare(0, 3, u"//:") == 0 ? 3 : 0).c_str();
  EXPECT_EQ(error.path1().native(), ku::i18n::to_string(queried));
  const std::string query(error.what(), std::strstr(error.what(), ": "));
  EXPECT_EQ(error.code().category(), boost::system::system_category());
  return query.substr(std::strlen("boost::filesystem::")) + reason({error.code().value(), std::system_category()});
}

class Paths : public RowTest {};

TEST_P(Paths, AreOpenedOrRefused) {
  const TemporaryDirectory directory;
  directory.file("file", "content");
  directory.file("secret", "");
  directory.link("dangling", "nowhere");
  directory.link("loop", "loop");
  directory.link("root", "/");
  ::chmod(directory.native("secret").c_str(), 0);
  ::mkdir(directory.native("locked").c_str(), 0600);
  ::mknod(directory.native("socket").c_str(), S_IFSOCK | 0666, 0);
  auto path = row.units(2);
  for (const auto* const name : {u"/DIR/", u"DIR/"}) boost::replace_all(path, name, directory.path(""));
  const auto before = ::setfsuid(65534);  // the superuser is never denied anything
  EXPECT_EQ(outcome(path, false), row.at(0));
  EXPECT_EQ(outcome(path, true), row.at(1));
  ::setfsuid(static_cast<uid_t>(before));
}

INSTANTIATE_TEST_SUITE_P(, Paths, testing::ValuesIn(table("tests/reading/paths.txt")), RowTest::name);

TEST(QARFileReaderFactory, OpensOnlyTheNamedFile) {
  in_environment({{"LC_ALL", "en_US.ISO-8859-1"}}, [] {
    const TemporaryDirectory directory;
    EXPECT_EQ(outcome(directory.file("\xE9", "e"), false), "e");
    EXPECT_EQ(outcome(directory.path("") + u"\u00E9", true), "e");
    EXPECT_EQ(outcome(directory.link("\xFC", "\xE9\xFF"), false), "\xE9\xFF");
    for (const auto* const similar : {"?", "e", "\x1A"}) directory.file(similar, "another file");
    for (const auto& name : {directory.path("") + u"\u65E5", directory.path("") + u"e\u0301"}) {
      EXPECT_EQ(outcome(name, false), "is_symlink, EILSEQ");
      EXPECT_EQ(outcome(name, true), "OPEN_FAILED, EILSEQ");
    }
  });
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
