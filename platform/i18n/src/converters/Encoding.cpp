#include "converters/Encoding.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

#include <unicode/uclean.h>

#include <array>
#include <map>
#include <mutex>
#include <string_view>

namespace ku::i18n::detail {
namespace {

bool decodes_to(IcuConverter& icu, char byte, char16_t expected) {
  std::array<char16_t, 4> units{};
  DecodingCursor c{&byte, &byte + 1, units.data(), units.data() + units.size()};
  return U_SUCCESS(icu.try_decode(c, true)) && units[0] == expected;
}

bool encodes(IcuConverter& icu, char16_t unit) {
  std::array<char, 16> bytes{};
  EncodingCursor c{&unit, &unit + 1, bytes.data(), bytes.data() + bytes.size()};
  return U_SUCCESS(icu.try_encode(c, true));
}

bool breaks_promises(UConverterType type) {
  const bool drops_text = type == UCNV_ISCII || type == UCNV_COMPOUND_TEXT;
  const bool goes_by_cuts = type == UCNV_SCSU || (type >= UCNV_LMBCS_1 && type <= UCNV_LMBCS_LAST);
  return drops_text || goes_by_cuts;
}

// The first of these that the encoding has; purely double-byte code pages have but the last, a wide question mark.
char16_t find_substitute(IcuConverter& icu) {
  for (const char16_t unit : {u'\uFFFD', u'?', u'\uFF1F'})  // not covered: no encoding of ICU's comes to the end
    if (encodes(icu, unit)) return unit;
  throw CvtExceptionBase("There is nothing to put in place of what is lacking.");  // not covered: see above
}

// ICU takes far more for a name than an encoding has: options behind a comma, names of converter files.
const char* canonical_name(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  const bool plain = name.find_first_of(std::string_view(",\0", 2)) == std::string::npos;
  const char* const canonical = plain ? ucnv_getAlias(name.c_str(), 0, &status) : nullptr;
  check(status);
  if (canonical == nullptr) throw CvtExceptionBase("There is no converter for the encoding.");
  return canonical;
}

// Should ICU lack the memory to set up its tables when they are first needed, it never tries again: have it done when
// the library is loaded.
[[gnu::constructor]] void set_up_icu() {
  UErrorCode status = U_ZERO_ERROR;
  u_init(&status);
}

class Registry {
public:
  const Encoding& find(const std::string& name) {
    const std::lock_guard lock(mutex_);
    if (const auto known = names_.find(name); known != names_.end()) return *known->second;
    const char* const canonical = canonical_name(name);
    const auto& encoding = encodings_.try_emplace(canonical, canonical).first->second;
    // One encoding has any number of names, since ICU passes over punctuation and case.
    if (names_.size() < most_names) names_.emplace(name, &encoding);
    return encoding;
  }

private:
  static constexpr std::size_t most_names = 1000;

  std::mutex mutex_;
  std::map<std::string, Encoding> encodings_;
  std::map<std::string, const Encoding*> names_;
};

}  // namespace

const Encoding& Encoding::named(const std::string& name) {
  static auto& registry = *new Registry;  // referred to until the very end of the program
  return registry.find(name.empty() ? ZrLocale::global().encoding() : name);
}

Encoding::Encoding(const char* canonical_name) : name_(canonical_name) {
  IcuConverter icu(name_, false);
  if (breaks_promises(icu.type())) throw CvtExceptionBase("The converter drops text, or goes by where it is cut.");
  exchanges_controls_ = decodes_to(icu, 0x1A, 0x1C);  // then it does so with all three
  substitute_ = find_substitute(icu);
  is_utf8_ = icu.type() == UCNV_UTF8;
  if (icu.is_context_free()) tables_.emplace(name_, exchanges_controls_);
}

std::unique_ptr<IcuConverter> Encoding::make_converter(bool tolerant) const {
  return tolerant ? std::make_unique<IcuConverter>(name_, exchanges_controls_, substitute_)
                  : std::make_unique<IcuConverter>(name_, exchanges_controls_);
}

}  // namespace ku::i18n::detail
