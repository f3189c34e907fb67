// Compares the catalogue with standard containers, and checks the texts of errors in every language.

#include "input.hpp"

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARData.hpp>

#include <map>
#include <utility>
#include <vector>

using namespace Korvane::qardatainterfaces;

namespace {

void check_catalogue(Input& input) {
  QARData data;
  std::map<std::u16string, std::pair<std::u16string, bool>> files;
  std::map<std::u16string, std::u16string> macros;
  std::vector<std::u16string> paths;
  while (!input.empty()) {
    const auto action = input.number();
    const auto name = input.name(3), other = input.name(3);
    switch (action % 6) {
      case 0:
        files[name] = {other, action > 99};
        require(data.addFileMapEntry(name, other, action > 99) == files.size());
        break;
      case 1:
        files.erase(name);
        files[other] = {name, false};
        require(data.replaceFileMapEntry(name, other, name) == files.size());
        break;
      case 2:
        macros[name] = other;
        require(data.addRootMacroMapEntry(name, other) == macros.size());
        break;
      case 3:
        paths.push_back(name);
        require(data.addTarvoPathEntry(name) == paths.size() && data.addClassPathEntry(name) == paths.size());
        break;
      case 4: data = QARData(data); break;
      default: require(data.existEntry(name) == (files.count(name) == 1));
    }
  }
  require(data.getRootMacroMap() == macros && data.getTarvoPathVector() == paths);
  require(data.getClassPathVector() == paths && data.getFileMap().size() == files.size());
  for (auto& [name, record] : data.getFileMap())
    require(files.at(name) == std::pair(record.getName(), record.isDemo()) && record.getUserData().empty());
}

void check_messages(Input& input) {
  static const char* const languages[] = {"C", "de", "es", "fr", "ja", "zh", "xx"};
  const ku::i18n::ZrLocale locale(languages[input.number() % std::size(languages)]);
  ku::i18n::ZrLocale::global(locale);
  const auto message = [&](const std::string& path, const std::string& reason) {
    const qar::qardatainterfaces::QARDATAINTERFACES_FILE_OPEN_FAILED id(path, reason);
    const auto text = ku::i18n::MessageCatalog::get_message(id, locale);
    auto whole = text;
    std::replace(whole.begin(), whole.end(), u'\0', u'\uFFFD');
    require(Korvane::rtxi18nutil::DeployedException(id).what() == ku::i18n::to_string(whole));
    return text;
  };
  const std::string arguments[] = {ku::i18n::to_string(input.name(200)), ku::i18n::to_string(input.name(200))};
  auto expected = message("\1", "\2");
  require(expected.find(u'\1') < expected.find(u'\2') && expected.find(u'\2') != expected.npos);
  for (auto at = expected.size(); at-- > 0;)
    if (expected[at] == u'\1' || expected[at] == u'\2')
      expected.replace(at, 1, ku::filesystem::detail::process_code_traits::to_internal(arguments[expected[at] - 1]));
  require(message(arguments[0], arguments[1]) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  if (input.number() % 2 == 0)
    check_catalogue(input);
  else
    check_messages(input);
  return 0;
}
