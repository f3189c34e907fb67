#include <qardatainterfaces/DeployedException.hpp>

#include "support/environment.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <qar/qardatainterfaces/messages.hpp>

#include <cstring>
#include <set>

namespace Korvane::rtxi18nutil {
namespace {

using ku::i18n::ZrLocale;
using namespace std::string_literals;
using namespace qar::qardatainterfaces;

DeployedException built_in(const std::string& locale, const tavik_core::BaseMsgID& id) {
  const auto before = ZrLocale::global(ZrLocale(locale));
  const DeployedException exception(id);
  ZrLocale::global(before);
  return exception;
}

const std::string path = "/it's {0} {1} '{1}' \"q\" ''/\xE6\x97\xA5";
const std::string reason = "file is {0} closed.'";

TEST(DeployedException, ShowsEachArgumentWholeInTheLanguageItWasBuiltIn) {
  const std::string cases[][2] = {
      {"C", "The file \"" + path + "\" cannot be opened: " + reason},
      {"de_DE.ISO-8859-1", "Die Datei „" + path + "“ kann nicht geöffnet werden: " + reason},
      {"es", "No se puede abrir el archivo «" + path + "»: " + reason},
      {"fr_CA", "Impossible d'ouvrir le fichier « " + path + " » : " + reason},
      {"ja_JP.SJIS", "ファイル「" + path + "」を開けません: " + reason},
      {"zh_TW@modifier", "无法打开文件“" + path + "”：" + reason}};
  const QARDATAINTERFACES_FILE_OPEN_FAILED id(path, reason);
  DeployedException assigned(id);
  for (const auto& [locale, text] : cases) {
    assigned = built_in(locale, id);
    EXPECT_EQ(assigned.what(), text);
    EXPECT_EQ(assigned.identifier(), "QARDATAINTERFACES_FILE_OPEN_FAILED");
  }
}

TEST(DeployedException, HasATextOfItsOwnForEachMessageAndLanguage) {
  std::set<std::string> texts;
  for (const auto* const locale : {"en", "de", "es", "fr", "ja", "zh"}) {
    const auto without = built_in(locale, QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER());
    EXPECT_TRUE(texts.insert(without.what()).second && without.what() != without.identifier()) << without.what();
    for (const auto& with : {built_in(locale, QARDATAINTERFACES_FILE_NOT_EXIST(path)),
                             built_in(locale, QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED(path))})
      EXPECT_TRUE(texts.insert(with.what()).second && std::strstr(with.what(), path.c_str())) << with.what();
  }
}

// A message that the resources, of another version perhaps, have no text for.
struct Unknown final : tavik_core::BaseMsgID {
  inline static const std::string id = "UNKNOWN";
  explicit Unknown(const tavik_core::BaseMsgID& other) : BaseMsgID(other.bundle(), id, {}) {}
};

TEST(DeployedException, FallsBackToTheNameOfTheMessage) {
  const DeployedException exception((Unknown(QARDATAINTERFACES_FILE_NOT_EXIST("x"))));
  EXPECT_STREQ(exception.what(), "UNKNOWN");
  EXPECT_EQ(exception.identifier(), "UNKNOWN");
}

TEST(DeployedException, SpeaksEnglishForLanguagesWithoutTextsWhateverTheEnvironment) {
  in_environment({{"LC_ALL", "de_DE.UTF-8"}, {"LANG", "fr_FR.UTF-8"}, {"LC_MESSAGES", "es_ES.UTF-8"}}, [] {
    const QARDATAINTERFACES_FILE_NOT_EXIST id("x");
    EXPECT_STREQ(DeployedException(id).what(), "Die Datei „x“ existiert nicht.");
    for (const std::string& locale : {"it_IT"s, "C"s, "POSIX.UTF-8"s, ".UTF-8"s, "../de"s, std::string(500, 'x')})
      EXPECT_STREQ(built_in(locale, id).what(), "The file \"x\" does not exist.") << locale;
  });
}

}  // namespace
}  // namespace Korvane::rtxi18nutil
