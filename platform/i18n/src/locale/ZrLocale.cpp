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

// The language and the territory in a locale's name.
std::string tag_of(const std::string& name) { return name.substr(0, name.find_first_of(".@")); }

bool is_neutral(const std::string& tag) { return tag == "C" || tag == "POSIX"; }

std::string value_of(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

// The environment's locale for the category with this variable.
std::string environment_name(const char* category) {
  for (const char* const variable : {"LC_ALL", category, "LANG"})
    if (auto name = value_of(variable); !name.empty()) return name;
  return "C";
}

// The languages listed in LANGUAGE, with a colon after each.
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

// The encoding of the installed locale of this name; empty if there is none. Does not change the locale of the
// process or of a thread.
std::string installed_encoding(const std::string& name) {
  struct Free {
    void operator()(locale_t locale) const noexcept { ::freelocale(locale); }
  };
  errno = 0;  // newlocale may fail without setting errno if it has already failed to find the locale
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
  static Current& current = *new Current;  // never destroyed: errors may be raised while the program ends
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
  const auto without_modifier = name_.substr(0, name_.find('@'));
  const auto dot = without_modifier.find('.');
  if (dot != std::string::npos)
    encoding_ = without_modifier.substr(dot + 1);
  else if (!is_neutral(tag))
    encoding_ = installed_encoding(name_);
  if (encoding_.empty()) encoding_ = "UTF-8";
}

void ZrLocale::set_languages(const std::string& languages) {
  languages_ = languages;
  language_ = languages.substr(0, languages.find_first_of(":_"));
}

// The environment is read once, since reading it later would race with a program that changes it.
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
