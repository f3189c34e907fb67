#include "contentLocale.hpp"

#include "UsageError.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

#include <unicode/uloc.h>

#include <memory>
#include <type_traits>

#include <locale.h>

namespace qarread {
namespace {

using ku::i18n::ZrLocale;

bool isInstalled(const std::string& name) {
  struct Free {
    void operator()(::locale_t locale) const noexcept { ::freelocale(locale); }
  };
  return std::unique_ptr<std::remove_pointer_t<::locale_t>, Free>(
             ::newlocale(LC_CTYPE_MASK, name.c_str(), nullptr)) != nullptr;
}

/// Whether the language and the country of the locale's name are in the ISO standards, or it is C or POSIX.
bool isStandard(const std::string& name) {
  const auto tag = name.substr(0, name.find_first_of(".@"));
  if (tag == "C" || tag == "POSIX") return true;
  const auto underscore = tag.find('_');
  return *::uloc_getISO3Language(tag.c_str()) != '\0' &&
         (underscore == tag.npos || *::uloc_getISO3Country(tag.c_str()) != '\0' || tag.size() - underscore == 5);
}

void checkEncoding(const ZrLocale& locale) {
  try {
    const ku::i18n::codecvt_string_to_ustring known(locale.encoding(), false);
  } catch (const ku::i18n::CvtExceptionBase& error) {
    throw UsageError("the locale " + locale.name() + ": " + error.what());
  }
}

}  // namespace

void setContentLocale(const std::string& name) {
  const ZrLocale locale(name);
  if (name.empty() || (!isStandard(name) && !isInstalled(name))) throw UsageError("unknown locale '" + name + "'");
  checkEncoding(locale);
  ZrLocale::global(locale);
}

void checkLocalCodePage() { checkEncoding(ZrLocale::global()); }

}  // namespace qarread
