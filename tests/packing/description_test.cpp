#include "Description.hpp"
#include "entryNames.hpp"

#include <gtest/gtest.h>
#include <qardatainterfaces/QARPath.hpp>

namespace packing {
namespace {

using Korvane::qardatainterfaces::QARByteArray;
using Korvane::qardatainterfaces::QARPath;

// Every byte, alone and next to others, text or not.
TEST(Description, IsReadAsItWasWritten) {
  Description before;
  before.context.setVersionInfo("1.2 \xFF\n\"");
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    const std::string name{'n', static_cast<char>(byte)};
    all += static_cast<char>(byte);
    before.catalogue.addFileMapEntry(QARPath::fromNative(name), QARPath::fromNative(all), byte % 2 == 0);
    before.catalogue.getFileMap()[QARPath::fromNative(name)].setUserData(all + std::string(1, '\0'));
    before.fingerprints[name] = {~0UL - static_cast<unsigned>(byte), ~0U};
  }
  before.catalogue.addRootMacroMapEntry(QARPath::fromNative(all), QARPath::fromNative(all));
  for (const char* path : {"b", "a", "b", "", "\xC3"}) {
    before.catalogue.addTarvoPathEntry(QARPath::fromNative(path));
    before.catalogue.addClassPathEntry(QARPath::fromNative(std::string(path) + "c"));
  }
  auto after = Description::fromJson(before.toJson());
  EXPECT_EQ(after.context.getVersionInfo(), before.context.getVersionInfo());
  EXPECT_EQ(after.fingerprints, before.fingerprints);
  EXPECT_EQ(after.catalogue.getRootMacroMap(), before.catalogue.getRootMacroMap());
  EXPECT_EQ(after.catalogue.getTarvoPathVector(), before.catalogue.getTarvoPathVector());
  EXPECT_EQ(after.catalogue.getClassPathVector(), before.catalogue.getClassPathVector());
  ASSERT_EQ(after.catalogue.getFileMap().size(), 255U);
  for (const auto& [name, record] : before.catalogue.getFileMap()) {
    const auto& other = after.catalogue.getFileMap()[name];
    EXPECT_EQ(other.getName(), record.getName());
    EXPECT_EQ(other.isDemo(), record.isDemo());
    EXPECT_EQ(other.getUserData(), record.getUserData());
  }
}

TEST(Description, HoldsNoKeys) {
  Description description;
  const auto without = description.toJson();
  const QARByteArray key(std::string("SECRET"));
  description.context.setTarvoKey(key);
  description.context.setCompilerKey(key);
  description.context.setSolutionKey(key);
  description.context.setEncSolutionKey(key);
  description.context.setEncKeyHash(key);
  EXPECT_EQ(description.toJson(), without);
}

TEST(EntryNames, FindLinksThatMayLeadOut) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"l", "a", false},     {"l", "./a//b/.", false},    {"l", "", false},
      {"l", "...", false},   {"l", "..", true},           {"l", "/", true},
      {"d/l", "..", false},  {"d/l", "../..", true},      {"d/e/l", ".././../x", false},
      {"d/l", "x/..", true}, {"d/e/l", "../x/../y", true}};
  for (const auto& [name, target, out] : cases) EXPECT_EQ(mayLeadOut(name, target), out) << name << " -> " << target;
}

}  // namespace
}  // namespace packing
