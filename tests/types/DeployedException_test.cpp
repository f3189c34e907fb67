#include <qardatainterfaces/DeployedException.hpp>

#include "support/environment.hpp"
#include "support/table.hpp"

#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <qar/qardatainterfaces/messages.hpp>

#include <cstring>
#include <stdexcept>

namespace Korvane::rtxi18nutil {
namespace {

using namespace qar::qardatainterfaces;

const std::string path = "/it's {0} {1} '{1}' \"q\" ''/\xE6\x97\xA5";
const std::string reason = "file is {0} closed.'";

struct AnyMessage final : tavik_core::BaseMsgID {
  AnyMessage(const std::string& name, std::vector<std::string> arguments)
      : BaseMsgID(QARDATAINTERFACES_FILE_NOT_EXIST("").bundle(), name, std::move(arguments)) {}
};

const std::map<std::string, std::string> spanish = {
    {"LC_ALL", "es_ES.UTF-8"}, {"LANG", "fr_FR.UTF-8"}, {"LC_MESSAGES", "fr_FR.UTF-8"}};

TEST(DeployedException, HasATextInTheLanguageOfTheEnvironmentForAnyPath) {
  in_environment(spanish, [] {
    DeployedException assigned((QARDATAINTERFACES_FILE_NOT_EXIST("x")));
    EXPECT_STREQ(assigned.what(), "El archivo «x» no existe.");
    assigned = DeployedException(QARDATAINTERFACES_FILE_NOT_EXIST(std::string("\xFF\0x", 3)));
    EXPECT_STREQ(assigned.what(), "El archivo «\uFFFD\uFFFDx» no existe.");
  });
}

class Messages : public RowTest {};

TEST_P(Messages, ShowEachArgumentWholeInTheLanguageTheyWereBuiltIn) {
  in_environment(spanish, [this] {
    const std::string name = "QARDATAINTERFACES_" + row.at(1);
    auto expected = row.at(2);
    std::vector<std::string> arguments;
    for (const auto& [word, value] : {std::pair("PATH", path), std::pair("REASON", reason)})
      if (const auto at = expected.find(word); at != std::string::npos) {
        expected.replace(at, std::strlen(word), value);
        arguments.push_back(value);
      }
    ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(row.at(0)));
    const AnyMessage id(name, arguments);
    DeployedException assigned((QARDATAINTERFACES_FILE_NOT_EXIST("x")));
    assigned = DeployedException(id);
    ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("C"));
    EXPECT_EQ(assigned.what(), expected);
    EXPECT_EQ(assigned.identifier(), name);
  });
}

INSTANTIATE_TEST_SUITE_P(, Messages, testing::ValuesIn(table("tests/types/messages.txt")), RowTest::name);

TEST(MessageCatalog, RefusesUnknownMessagesAndMissingArguments) {
  const ku::i18n::ZrLocale locale("C");
  for (const std::string name : {"QARDATAINTERFACES_UNKNOWN", "QARDATAINTERFACES_FILE_NOT_EXIST"})
    EXPECT_THROW(ku::i18n::MessageCatalog::get_message(AnyMessage(name, {}), locale), std::runtime_error);
}

}  // namespace
}  // namespace Korvane::rtxi18nutil
