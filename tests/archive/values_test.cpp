#include "support/seen.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace Korvane::qardatainterfaces {
namespace {

QARByteArray bytes(const std::string& text) { return {text}; }
char next(QARByteArray& key) {
  unsigned char byte = 0;
  return key.read(&byte, 1) == 1 ? static_cast<char>(byte) : '\0';
}

constexpr struct {
  void (QARContext::*set)(const QARByteArray&);
  QARByteArray& (QARContext::*get)();
  const char* seen;
} keys[] = {{&QARContext::setTarvoKey, &QARContext::getTarvoKey, ",one,none,none,none,none"},
            {&QARContext::setCompilerKey, &QARContext::getCompilerKey, ",none,one,none,none,none"},
            {&QARContext::setSolutionKey, &QARContext::getSolutionKey, ",none,none,one,none,none"},
            {&QARContext::setEncSolutionKey, &QARContext::getEncSolutionKey, ",none,none,none,one,none"},
            {&QARContext::setEncKeyHash, &QARContext::getEncKeyHash, ",none,none,none,none,one"}};

TEST(QARContext, CopiesEachKeyFromItsFirstByteAndHandsOutTheKeyItself) {
  for (const auto& [set, get, expected] : keys) {
    QARContext context;
    QARByteArray argument = bytes("one");
    next(argument);
    (context.*set)(argument);
    argument = bytes("changed");
    EXPECT_EQ(seen(context), expected);
    EXPECT_EQ(next((context.*get)()), 'o');
    (context.*set)((context.*get)());
    EXPECT_EQ(next((context.*get)()), 'n') << "setting a key to itself leaves its read position";
    (context.*set)(bytes("second, longer"));
    EXPECT_EQ(next((context.*get)()), 's');
  }
}

TEST(QARContext, TakesTheVersionUpToTheFirstZeroAndCopiesAll) {
  QARContext context, assigned;
  context.setVersionInfo("1.0 \xFF\x80 \n\0no more");
  EXPECT_THROW(context.setVersionInfo(nullptr), std::logic_error);
  for (const auto& key : keys) (context.*key.set)(bytes("k" + std::to_string(&key - keys)));
  next(context.getTarvoKey());
  context = *&context;
  EXPECT_EQ(next(context.getTarvoKey()), '0') << "where it was";
  assigned = context;
  QARContext copy(context);
  EXPECT_EQ(next(copy.getTarvoKey()), 'k') << "from the first byte";
  context = QARContext();
  EXPECT_EQ(seen(context), ",,,,,") << "copies have storage";
  EXPECT_EQ(seen(assigned), "1.0 \xFF\x80 \n,k0,k1,k2,k3,k4");
  EXPECT_EQ(seen(copy), seen(assigned));
}

TEST(QARRecordData, StoresWhatItIsGivenAndHandsOutItsOwnMetadata) {
  EXPECT_EQ(seen(QARMetaData()), "+");
  EXPECT_EQ(seen(QARRecordData()), "+");
  QARRecordData record({u'n', u'\0', u'\xD800'}, false, std::string("\0\xFF", 2));
  const QARRecordData copy(record);
  record.getMetaData().setDemo(true);
  record.getMetaData().setUserData("new");
  record.setName(u"");
  EXPECT_EQ(seen(record), "new+");
  record = copy;
  EXPECT_EQ(record.getName(), std::u16string(u"n\0\xD800", 3));
  EXPECT_EQ(record.getUserData(), std::string("\0\xFF", 2));
  record.setDemo(true);
  record.setUserData("");
  EXPECT_EQ(seen(record.getMetaData()), "+");
  EXPECT_FALSE(copy.isDemo());
  record.setDemo(false);
  EXPECT_FALSE(record.isDemo());
}

TEST(QARData, CountsAndReplaces) {
  QARData data;
  const struct {
    std::function<std::uint64_t()> step;
    std::uint64_t count;
    const char* seen;
  } steps[] = {{[&] { return data.addFileMapEntry(u"k", u"n", true); }, 1, "k=n+ "},
               {[&] { return data.addFileMapEntry(u"", u"m", false); }, 2, "=m- k=nold+ "},
               {[&] { return data.addFileMapEntry(u"k", u"m", false); }, 2, "=mold- k=m- "},
               {[&] { return data.replaceFileMapEntry(u"absent", u"a", u"1"); }, 3, "=mold- a=1- k=mold- "},
               {[&] { return data.replaceFileMapEntry(u"k", u"k", u"3"); }, 3, "=mold- a=1old- k=3- "},
               {[&] { return data.replaceFileMapEntry(u"", u"k", u"4"); }, 2, "a=1old- k=4- "},
               {[&] { return data.addRootMacroMapEntry(u"m", u"1"); }, 1, "a=1old- k=4old- $m=1 "},
               {[&] { return data.addRootMacroMapEntry(u"m", u"2"); }, 1, "a=1old- k=4old- $m=2 "},
               {[&] { return data.addTarvoPathEntry(u"x"); }, 1, "a=1old- k=4old- $m=2 t:x "},
               {[&] { return data.addTarvoPathEntry(u"x"); }, 2, "a=1old- k=4old- $m=2 t:x t:x "},
               {[&] { return data.addClassPathEntry(u""); }, 1, "a=1old- k=4old- $m=2 t:x t:x c: "}};
  for (const auto& [step, count, expected] : steps) {
    for (auto& [name, record] : data.getFileMap()) record.setUserData("old");
    EXPECT_EQ(step(), count);
    EXPECT_EQ(seen(data), expected);
  }
  EXPECT_TRUE(data.existEntry(u"k") && !data.existEntry(u""));
  QARData assigned, copy(data);
  assigned = data;
  data = QARData();
  EXPECT_EQ(seen(data), "");
  EXPECT_EQ(seen(assigned), std::rbegin(steps)->seen);
  EXPECT_EQ(seen(copy), seen(assigned));
}

TEST(QARData, OrdersNamesByUnitAndNormalisesNothing) {
  const std::vector<std::u16string> names{u"",   {u'\0'},   u"A/b",         u"B",          u"a",      u"a ",
                                          u"a/", u"a//b",   u"a/b",         u"a\\b",       u"a\\b/",  u"e\u0301",
                                          u"z",  u"\u00E9", u"\U00010000~", u"\U0010FFFF", u"\xDC00", u"\uFF01"};
  QARData data;
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    data.addFileMapEntry(*name, u"", true);
    data.addRootMacroMapEntry(*name, u"");
  }
  std::vector<std::u16string> entries, macros;
  for (const auto& [name, record] : data.getFileMap()) entries.push_back(name);
  for (const auto& [name, value] : data.getRootMacroMap()) macros.push_back(name);
  EXPECT_EQ(entries, names);
  EXPECT_EQ(macros, names);
}

TEST(QARData, KeepsEntriesWhereTheyAreAndTakesArgumentsFromThem) {
  const std::u16string name = u"a name that is longer than what a string holds within itself";
  QARData data;
  const auto own = [&]() -> const std::u16string& { return data.getFileMap().begin()->first; };
  data.addFileMapEntry(name, u"", true);
  const auto& record = data.getFileMap().at(name);
  for (std::size_t i = 0; i < 100; ++i) data.addFileMapEntry(std::u16string(i, u'j'), u"", true);
  data.addFileMapEntry(name, u"new", true);
  EXPECT_EQ(&record, &data.getFileMap().at(name));

  data = QARData();
  data.addFileMapEntry(name, u"", true);
  data.addFileMapEntry(own(), own(), false);
  EXPECT_EQ(data.replaceFileMapEntry(own(), own(), own()), 1U);
  EXPECT_EQ(data.replaceFileMapEntry(own(), u"new", own()), 1U);
  data.addRootMacroMapEntry(name, u"");
  const auto& macro = data.getRootMacroMap().begin()->first;
  data.addRootMacroMapEntry(macro, macro);
  EXPECT_EQ(seen(data), "new=" + seen(name) + "- $" + seen(name) + "=" + seen(name) + ' ');
  data.addTarvoPathEntry(name);
  for (int i = 0; i < 20; ++i) data.addTarvoPathEntry(data.getTarvoPathVector().front());  // which moves
  EXPECT_EQ(data.getTarvoPathVector(), std::vector<std::u16string>(21, name));
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
