#include "converters/code_pages.hpp"

#include <ku/i18n/codecvt.hpp>

#include <unicode/udata.h>

#include <algorithm>
#include <string_view>

extern "C" {
// The compiled code pages. makeconv and pkgdata generate them, and this name.
extern const char zrqar_codepages_dat[];
}

namespace ku::i18n::detail {
namespace {

constexpr char package[] = "zrqar_codepages";
constexpr char package_prefix[] = "zrqar_codepages/";  // prefix of our pages' names; no ICU name has a slash

struct Name {
  const char* name;
  const char* page;
  bool is_in_package;
};

constexpr Name names[] = {
#include "names.inc"
};

struct Respelling {
  const char* page;
  char32_t code;
  char16_t other;
};

constexpr Respelling respellings[] = {
#include "respellings.inc"
};

// Case and punctuation are ignored, as in ICU's names. Empty if there is none.
std::string find_own(const std::string& name) {
  for (const auto& known : names)
    if (ucnv_compareNames(known.name, name.c_str()) == 0)
      return known.is_in_package ? std::string(package_prefix) + known.page : known.page;
  return {};
}

std::string find_icu(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  const char* const canonical = ucnv_getAlias(name.c_str(), 0, &status);  // null also if the name is too long
  return canonical == nullptr ? "" : canonical;
}

// The digits of a name such as "CP949".
std::string_view windows_number(std::string_view name) {
  const bool has_prefix = name.size() > 2 && (name[0] | 0x20) == 'c' && (name[1] | 0x20) == 'p';
  if (!has_prefix || !std::all_of(name.begin() + 2, name.end(), [](char c) { return c >= '0' && c <= '9'; }))
    return {};
  return name.substr(2);
}

}  // namespace

void add_code_pages(UErrorCode* status) { udata_setAppData(package, zrqar_codepages_dat, status); }

std::string find_code_page(const std::string& name) {
  // ICU accepts more than names of encodings: options after a comma, and names of converter files.
  if (name.find_first_of(std::string_view(",\0", 2)) == std::string::npos) {
    if (auto page = find_own(name); !page.empty()) return page;
    if (const auto number = windows_number(name); !number.empty())
      if (auto page = find_icu(std::string("windows-").append(number)); !page.empty()) return page;
    if (auto page = find_icu(name); !page.empty()) return page;
  }
  throw CvtExceptionBase("there is no converter for it");
}

UConverter* open_converter(const std::string& code_page, UErrorCode& status) {
  if (code_page.compare(0, sizeof(package_prefix) - 1, package_prefix) != 0)
    return ucnv_open(code_page.c_str(), &status);
  return ucnv_openPackage(package, code_page.c_str() + sizeof(package_prefix) - 1, &status);
}

char16_t find_respelling(const std::string& code_page, char32_t code) noexcept {
  for (const auto& [page, from, other] : respellings)
    if (from == code && page == code_page) return other;
  return 0;
}

}  // namespace ku::i18n::detail
