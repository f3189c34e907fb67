#include <qardatainterfaces/QARData.hpp>

#include <gtest/gtest.h>

#include <vector>

namespace Korvane::qardatainterfaces {
namespace {

const std::u16string long_name = u"a name that is longer than what a string holds within itself";

void expect_record(QARData& data, const std::u16string& entry, const std::u16string& name, bool demo) {
  ASSERT_TRUE(data.existEntry(entry));
  const auto& record = data.getFileMap().at(entry);
  EXPECT_EQ(record.getName(), name);
  EXPECT_EQ(record.isDemo(), demo);
  EXPECT_EQ(record.getUserData(), "");
}

TEST(QARData, SettingAnEntryReplacesItsRecordWhereItIs) {
  QARData data;
  EXPECT_FALSE(data.existEntry(u""));
  EXPECT_EQ(data.addFileMapEntry(u"k", u"n", true), 1U);
  expect_record(data, u"k", u"n", true);
  auto& record = data.getFileMap().at(u"k");
  record.setUserData("lost");
  for (std::size_t i = 0; i < 100; ++i) data.addFileMapEntry(std::u16string(i, u'j'), u"", true);
  EXPECT_EQ(data.addFileMapEntry(u"k", u"m", false), 101U);
  expect_record(data, u"k", u"m", false);
  EXPECT_EQ(&record, &data.getFileMap().at(u"k"));
}

TEST(QARData, ReplacingRemovesOneEntryAndSetsAnother) {
  QARData data;
  EXPECT_EQ(data.replaceFileMapEntry(u"absent", u"a", u"1"), 1U);
  expect_record(data, u"a", u"1", false);
  data.addFileMapEntry(u"b", u"2", true);
  data.getFileMap().at(u"b").setUserData("lost");
  EXPECT_EQ(data.replaceFileMapEntry(u"b", u"b", u"3"), 2U);
  expect_record(data, u"b", u"3", false);
  EXPECT_EQ(data.replaceFileMapEntry(u"a", u"b", u"4"), 1U);
  expect_record(data, u"b", u"4", false);
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

TEST(QARData, KeepsTheLastValueOfAMacroAndEveryPath) {
  QARData data;
  EXPECT_EQ(data.addRootMacroMapEntry(u"m", u"1"), 1U);
  EXPECT_EQ(data.addRootMacroMapEntry(u"m", u"2"), 1U);
  EXPECT_EQ(data.getRootMacroMap().at(u"m"), u"2");
  for (std::size_t i = 1; i <= 20; ++i)  // the argument moves when the list grows
    EXPECT_EQ(data.addTarvoPathEntry(i == 1 ? long_name : data.getTarvoPathVector().front()), i);
  EXPECT_EQ(data.addClassPathEntry(u""), 1U);
  EXPECT_EQ(data.getTarvoPathVector(), std::vector<std::u16string>(20, long_name));
  EXPECT_EQ(data.getClassPathVector(), std::vector<std::u16string>{u""});
}

TEST(QARData, TakesArgumentsFromItsOwnEntries) {
  QARData data;
  data.addRootMacroMapEntry(long_name, u"value");
  const auto& macro = data.getRootMacroMap().begin()->first;
  data.addRootMacroMapEntry(macro, macro);
  EXPECT_EQ(data.getRootMacroMap().at(long_name), long_name);

  data.addFileMapEntry(long_name, u"", true);
  const auto own = [&]() -> const std::u16string& { return data.getFileMap().begin()->first; };
  data.addFileMapEntry(own(), own(), false);
  expect_record(data, long_name, long_name, false);
  EXPECT_EQ(data.replaceFileMapEntry(own(), own(), own()), 1U);
  expect_record(data, long_name, long_name, false);
  EXPECT_EQ(data.replaceFileMapEntry(own(), u"new", own()), 1U);
  expect_record(data, u"new", long_name, false);
}

TEST(QARData, CopiesAreIndependent) {
  QARData data, assigned;
  data.addFileMapEntry(u"k", u"n", true);
  data.addRootMacroMapEntry(u"m", u"v");
  data.addTarvoPathEntry(u"t");
  data.addClassPathEntry(u"c");
  assigned = data;
  QARData copy(data);
  data = QARData();
  EXPECT_FALSE(data.existEntry(u"k"));
  for (auto* const it : {&copy, &assigned}) {
    expect_record(*it, u"k", u"n", true);
    EXPECT_EQ(it->getRootMacroMap().at(u"m") + it->getTarvoPathVector().at(0) + it->getClassPathVector().at(0),
              u"vtc");
  }
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
