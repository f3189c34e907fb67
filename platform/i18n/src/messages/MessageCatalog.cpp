#include <ku/i18n/MessageCatalog.hpp>

#include "locale/process_code.hpp"

#include <ku/i18n/codecvt.hpp>

#include <unicode/simpleformatter.h>
#include <unicode/udata.h>
#include <unicode/ures.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

namespace ku::i18n {
namespace {

struct CloseBundle {
  void operator()(UResourceBundle* bundle) const noexcept { ures_close(bundle); }
};
using BundleHandle = std::unique_ptr<UResourceBundle, CloseBundle>;

void check_found(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
}

// The texts in this language; null if there are none.
BundleHandle find_texts(const tavik_core::MessageBundle& bundle, const std::string& language) {
  UErrorCode status = U_ZERO_ERROR;
  BundleHandle texts(ures_open(bundle.name, language.c_str(), &status));
  // A warning means that ICU falls back to the language of the environment. The error means that the name is too
  // long.
  if (status == U_USING_DEFAULT_WARNING || status == U_ILLEGAL_ARGUMENT_ERROR) return nullptr;
  check_found(status);
  return texts;
}

// Whether the language is English, the language of the root bundle.
bool is_root(const std::string& language) {
  const auto code = language.substr(0, language.find('_'));
  return code.empty() || code == "en" || code == "C" || code == "POSIX";
}

// The texts in the first of the languages, separated by colons, that has any; else the English ones.
BundleHandle open_bundle(const tavik_core::MessageBundle& bundle, const std::string& languages) {
  UErrorCode status = U_ZERO_ERROR;
  udata_setAppData(bundle.name, bundle.data, &status);
  check_found(status);
  for (std::size_t begin = 0; begin < languages.size();) {
    const auto end = std::min(languages.find(':', begin), languages.size());
    const auto language = languages.substr(begin, end - begin);
    if (is_root(language)) break;
    if (auto texts = find_texts(bundle, language)) return texts;
    begin = end + 1;
  }
  status = U_ZERO_ERROR;  // from the second call on, udata_setAppData sets a warning
  BundleHandle texts(ures_open(bundle.name, "root", &status));
  check_found(status);
  return texts;
}

icu::UnicodeString text_of(const std::string& argument) {
  const auto text = codecvt_string_to_ustring(detail::process_code(), true).convert(argument.data(), argument.size());
  constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
  if (text.size() > most) throw std::length_error("MessageCatalog::get_message");
  icu::UnicodeString result(text.data(), static_cast<std::int32_t>(text.size()));
  if (result.isBogus()) throw std::bad_alloc();  // the formatter would ignore a bogus argument
  return result;
}

}  // namespace

std::u16string MessageCatalog::get_message(const tavik_core::BaseMsgID& id, const ZrLocale& locale) {
  const auto texts = open_bundle(id.bundle(), locale.languages());
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = 0;
  const char16_t* const pattern = ures_getStringByKey(texts.get(), id.name().c_str(), &length, &status);
  check_found(status);

  std::vector<icu::UnicodeString> arguments;
  std::vector<const icu::UnicodeString*> pointers;
  arguments.reserve(id.arguments().size());
  for (const auto& argument : id.arguments()) {
    arguments.push_back(text_of(argument));
    pointers.push_back(&arguments.back());
  }

  const auto count = static_cast<std::int32_t>(pointers.size());
  const icu::SimpleFormatter formatter(icu::UnicodeString(true, pattern, length), count, count, status);
  icu::UnicodeString message;
  formatter.formatAndAppend(pointers.data(), count, message, nullptr, 0, status);
  check_found(status);
  // If there was no memory for the pattern, ICU returns an empty message. No message of ours is empty.
  if (message.isBogus() || message.isEmpty()) throw std::bad_alloc();
  return {message.getBuffer(), static_cast<std::size_t>(message.length())};
}

}  // namespace ku::i18n
