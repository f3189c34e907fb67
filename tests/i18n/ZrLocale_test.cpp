#include <ku/i18n/ZrLocale.hpp>

#include "support/environment.hpp"

#include <gtest/gtest.h>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <thread>
#include <vector>

namespace ku::i18n {
namespace {

TEST(ZrLocale, TakesItsNameApart) {
  const std::map<std::string, std::pair<std::string, std::string>> cases = {{"ja_JP.SJIS@mod", {"ja", "SJIS"}},
                                                                            {"de_DE@euro", {"de", "UTF-8"}},
                                                                            {"fr.", {"fr", "UTF-8"}},
                                                                            {"POSIX", {"", "UTF-8"}},
                                                                            {"C.ISO-8859-15", {"", "ISO-8859-15"}}};
  for (const auto& [name, parts] : cases)
    EXPECT_EQ(std::pair(ZrLocale(name).language(), ZrLocale(name).encoding()), parts) << name;
}

TEST(ZrLocale, StartsAsTheFirstVariableOfTheEnvironmentThatSaysAnything) {
  const std::pair<std::map<std::string, std::string>, std::string> cases[] = {
      {{{"LC_ALL", "fr_FR"}, {"LC_CTYPE", "de_DE"}, {"LANG", "es_ES"}}, "fr_FR"},
      {{{"LC_ALL", ""}, {"LC_CTYPE", "de_DE"}, {"LANG", "es_ES"}}, "de_DE"},
      {{{"LC_MESSAGES", "de_DE"}, {"LANG", "es_ES"}}, "es_ES"},
      {{}, "C"}};
  for (const auto& [variables, name] : cases)
    in_environment(variables, [&name = name] {
      EXPECT_EQ(ZrLocale::global(ZrLocale("ja_JP.SJIS")).name(), name);
      ::setenv("LC_ALL", "later", 1);
      EXPECT_EQ(ZrLocale("").name(), name) << "the environment is asked once";
      EXPECT_EQ(ZrLocale::global().encoding(), "SJIS");
    });
}

TEST(ZrLocale, IsNeverSeenHalfChanged) {
  const auto before = ZrLocale::global(ZrLocale("C"));
  std::vector<std::thread> threads;
  for (const std::string name : {"de", "ja_JP.SJIS_0123456789", "zh_CN.GB18030_01234567890123456789"})
    threads.emplace_back([name] {
      for (int i = 0; i < 2000; ++i)
        for (const auto& seen : {ZrLocale::global(ZrLocale(name)), ZrLocale::global()}) {
          ASSERT_EQ(seen.language(), ZrLocale(seen.name()).language());
          ASSERT_EQ(seen.encoding(), ZrLocale(seen.name()).encoding());
        }
      const qar::qardatainterfaces::QARDATAINTERFACES_FILE_NOT_EXIST id("path");
      for (int i = 0; i < 20; ++i)
        ASSERT_STRNE(Korvane::rtxi18nutil::DeployedException(id).what(), id.name().c_str());
    });
  for (auto& thread : threads) thread.join();
  ZrLocale::global(before);
}

}  // namespace
}  // namespace ku::i18n
