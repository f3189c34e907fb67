#include "converters/Encoding.hpp"

#include "converters/code_pages.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

#include <unicode/uclean.h>
#include <unicode/unorm2.h>
#include <unicode/ures.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <numeric>

namespace ku::i18n::detail {
namespace {

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

// Names with options ask for a signature.
Encoding::Form form_of(const IcuConverter& icu, const std::string& name) {
  using Form = Encoding::Form;
  if (icu.is_context_free()) return Form::code_page;
  if (name.find(',') != std::string::npos) return Form::other;
  switch (icu.type()) {
    case UCNV_UTF8: return Form::utf8;
    case UCNV_UTF16_LittleEndian: return Form::utf16_little_endian;
    case UCNV_UTF16_BigEndian: return Form::utf16_big_endian;
    case UCNV_UTF32_LittleEndian: return Form::utf32_little_endian;
    case UCNV_UTF32_BigEndian: return Form::utf32_big_endian;
    default: return Form::other;
  }
}

// Of a stateless encoding.
bool keeps_ascii(IcuConverter& icu) {
  std::array<char, 0x80> bytes{}, encoded{};
  std::array<char16_t, 0x80> units{}, decoded{};
  std::iota(bytes.begin(), bytes.end(), '\0');
  std::iota(units.begin(), units.end(), u'\0');
  DecodingCursor reading{bytes.data(), bytes.data() + bytes.size(), decoded.data(), decoded.data() + decoded.size()};
  EncodingCursor writing{units.data(), units.data() + units.size(), encoded.data(), encoded.data() + encoded.size()};
  return U_SUCCESS(icu.try_decode(reading, true)) && decoded == units && U_SUCCESS(icu.try_encode(writing, true)) &&
         encoded == bytes;
}

// The first of these that the encoding has; purely double-byte code pages have but the last, a wide question mark.
char16_t find_substitute(IcuConverter& icu) {
  for (const char16_t unit : {u'\uFFFD', u'?', u'\uFF1F'})  // not covered: no encoding of ICU's comes to the end
    if (encodes(icu, unit)) return unit;
  throw CvtExceptionBase("There is nothing to put in place of what is lacking.");  // not covered: see above
}

// All of ICU that is set up once is set up here, when the library is loaded: its tables and the library's own, its
// default locale, its cache of resource bundles and its composition of characters. If it lacked the memory when they
// are first needed, it would never try again, or deadlock.
[[gnu::constructor]] void set_up_icu() {
  UErrorCode status = U_ZERO_ERROR;
  u_init(&status);
  add_code_pages(&status);
  ures_close(ures_open(nullptr, "root", &status));
  unorm2_getNFCInstance(&status);
}

// A name may be anything; a message is text.
std::string quote(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c < 0x20 || c > 0x7E; }, '?');
  return '"' + name + '"';
}

class Registry {
public:
  const Encoding& find(const std::string& name) {
    const std::lock_guard lock(mutex_);
    if (const auto known = names_.find(name); known != names_.end()) return *known->second;
    const auto& encoding = open(name);
    // One encoding has any number of names, since punctuation and case do not count.
    if (names_.size() < most_names) names_.emplace(name, &encoding);
    return encoding;
  }

private:
  static constexpr std::size_t most_names = 1000;

  const Encoding& open(const std::string& name) try {
    const auto code_page = find_code_page(name);
    return encodings_.try_emplace(code_page, code_page).first->second;
  } catch (const CvtExceptionBase& error) {
    throw CvtExceptionBase("The encoding " + quote(name) + " is refused: " + error.what() + ".");
  }

  std::mutex mutex_;
  std::map<std::string, Encoding> encodings_;
  std::map<std::string, const Encoding*> names_;
};

}  // namespace

const Encoding& Encoding::named(const std::string& name) {
  static auto& registry = *new Registry;  // referred to until the very end of the program
  return registry.find(name.empty() ? ZrLocale::global().encoding() : name);
}

Encoding::Encoding(const std::string& code_page) : name_(code_page) {
  IcuConverter icu(name_);
  if (breaks_promises(icu.type())) throw CvtExceptionBase("its converter drops text, or goes by where it is cut");
  substitute_ = find_substitute(icu);
  form_ = form_of(icu, name_);
  is_single_byte_ = icu.is_single_byte();
  is_latin1_ = icu.type() == UCNV_LATIN_1;
  const bool is_stateless = form_ == Form::code_page || form_ == Form::utf8;
  is_superset_of_ascii_ = is_stateless && keeps_ascii(icu);
}

std::unique_ptr<IcuConverter> Encoding::make_converter(bool tolerant) const {
  return tolerant ? std::make_unique<IcuConverter>(name_, substitute_) : std::make_unique<IcuConverter>(name_);
}

}  // namespace ku::i18n::detail
