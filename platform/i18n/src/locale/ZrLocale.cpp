#include <ku/i18n/ZrLocale.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <type_traits>
#include <utility>

#include <langinfo.h>
#include <locale.h>

namespace ku::i18n {
namespace {

// The part of a locale's name that tells language and territory.
std::string tag_of(const std::string& name) { return name.substr(0, name.find_first_of(".@")); }

bool is_neutral(const std::string& tag) { return tag == "C" || tag == "POSIX"; }

std::string value_of(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

// The locale of one category, which has a variable of its own.
std::string environment_name(const char* category) {
  for (const char* const variable : {"LC_ALL", category, "LANG"})
    if (auto name = value_of(variable); !name.empty()) return name;
  return "C";
}

// What LANGUAGE lists, with a colon behind each.
std::string preferred_languages() {
  const auto names = value_of("LANGUAGE");
  std::string languages;
  for (std::size_t begin = 0; begin < names.size();) {
    const auto end = std::min(names.find(':', begin), names.size());
    if (const auto tag = tag_of(names.substr(begin, end - begin)); !tag.empty()) languages.append(tag).append(":");
    begin = end + 1;
  }
  return languages;
}

// Of the installed locale of that name; empty if there is none. No locale of the process or of a thread changes.
std::string installed_encoding(const std::string& name) {
  struct Free {
    void operator()(locale_t locale) const noexcept { ::freelocale(locale); }
  };
  errno = 0;  // newlocale leaves it alone for a locale that it has not found before
  const std::unique_ptr<std::remove_pointer_t<locale_t>, Free> locale(
      ::newlocale(LC_CTYPE_MASK, name.c_str(), nullptr));
  if (!locale && errno == ENOMEM) throw std::bad_alloc();
  return locale ? ::nl_langinfo_l(CODESET, locale.get()) : "";
}

struct Current {
  std::mutex mutex;
  ZrLocale locale{""};
};

Current& current() {
  static Current& current = *new Current;  // errors may still be raised while the program ends
  return current;
}

}  // namespace

ZrLocale::ZrLocale(const std::string& name) : name_(name) {
  if (name_.empty()) {
    *this = environment();
    return;
  }
  const auto tag = tag_of(name_);
  if (!is_neutral(tag)) set_languages(tag);
  const auto at = name_.find('@');
  const auto dot = name_.substr(0, at).find('.');
  if (dot != std::string::npos)
    encoding_ = name_.substr(dot + 1, at == std::string::npos ? at : at - dot - 1);
  else if (!is_neutral(tag))
    encoding_ = installed_encoding(name_);
  if (encoding_.empty()) encoding_ = "UTF-8";
}

void ZrLocale::set_languages(const std::string& languages) {
  languages_ = languages;
  language_ = languages.substr(0, languages.find_first_of(":_"));
}

// The environment is asked once: a program that changes it meanwhile would race with us.
const ZrLocale& ZrLocale::environment() {
  static const ZrLocale& environment = []() -> const ZrLocale& {
    auto locale = std::make_unique<ZrLocale>(environment_name("LC_CTYPE"));
    const auto messages = tag_of(environment_name("LC_MESSAGES"));
    locale->set_languages(is_neutral(messages) ? "" : preferred_languages() + messages);
    return *locale.release();
  }();
  return environment;
}

ZrLocale ZrLocale::global() {
  const std::lock_guard lock(current().mutex);
  return current().locale;
}

ZrLocale ZrLocale::global(const ZrLocale& next) {
  ZrLocale other = next;
  const std::lock_guard lock(current().mutex);
  std::swap(current().locale, other);
  return other;
}

}  // namespace ku::i18n
