#include <ku/i18n/ZrLocale.hpp>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace ku::i18n {
namespace {

std::string environment_name() {
  for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

// The environment is asked once: a program that changes it meanwhile would race with us.
const ZrLocale& environment() {
  static const ZrLocale& locale = *new ZrLocale(environment_name());
  return locale;
}

struct Current {
  std::mutex mutex;
  ZrLocale locale = environment();
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
  const auto at = name_.find('@');
  const auto dot = name_.substr(0, at).find('.');
  const auto tag = name_.substr(0, std::min(at, dot));
  if (tag != "C" && tag != "POSIX") language_ = tag.substr(0, tag.find('_'));
  if (dot != std::string::npos) encoding_ = name_.substr(dot + 1, at == std::string::npos ? at : at - dot - 1);
  if (encoding_.empty()) encoding_ = "UTF-8";
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
