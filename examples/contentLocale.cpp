#include "contentLocale.hpp"

#include "UsageError.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

namespace qarread {

void setContentLocale(const std::string& name) {
  const ku::i18n::ZrLocale locale(name);
  try {
    const ku::i18n::codecvt_string_to_ustring known(locale.encoding(), false);
  } catch (const ku::i18n::CvtExceptionBase& error) {
    throw UsageError(error.what());
  }
  ku::i18n::ZrLocale::global(locale);
}

}  // namespace qarread
