#include "locale/process_code.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

namespace ku::i18n::detail {

const std::string& process_code() {
  static const auto& name = *new std::string([]() -> std::string {
    auto encoding = ZrLocale("").encoding();
    try {
      const codecvt_string_to_ustring known(encoding, true);
      return encoding;
    } catch (const CvtExceptionBase&) {
      return "UTF-8";
    }
  }());
  return name;
}

}  // namespace ku::i18n::detail
