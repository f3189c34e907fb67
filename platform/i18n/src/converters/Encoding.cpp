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

bool violates_contract(UConverterType type) {
  const bool drops_text = type == UCNV_ISCII || type == UCNV_COMPOUND_TEXT || type == UCNV_HZ;
  const bool depends_on_splits = type == UCNV_SCSU || (type >= UCNV_LMBCS_1 && type <= UCNV_LMBCS_LAST);
  return drops_text || depends_on_splits;
}

// A converter whose ICU name has options, after a comma, writes a signature.
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

// Whether ASCII text has the same bytes in this encoding. Requires: the encoding is stateless.
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

// The first of three candidates that the encoding has. Double-byte code pages have only the last one, the fullwidth
// question mark.
char16_t find_substitute(IcuConverter& icu) {
  for (const char16_t unit : {u'\uFFFD', u'?', u'\uFF1F'})
    if (encodes(icu, unit)) return unit;
  throw CvtExceptionBase("The encoding has no substitute character.");
}

// Initialises everything that ICU initialises once, when the library is loaded: ICU's tables and the library's own,
// the default locale, the cache of resource bundles and the composition of characters. If memory ran out during a
// later initialisation, ICU would never try again, or deadlock.
[[gnu::constructor]] void set_up_icu() {
  UErrorCode status = U_ZERO_ERROR;
  u_init(&status);
  add_code_pages(&status);
  ures_close(ures_open(nullptr, "root", &status));
  unorm2_getNFCInstance(&status);
}

// A name may have any bytes, so those that are not printable ASCII are replaced.
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
    // One encoding has an unlimited number of names, since punctuation and case are ignored.
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
  static auto& registry = *new Registry;  // never destroyed: it may be used until the end of the program
  return registry.find(name.empty() ? ZrLocale::global().encoding() : name);
}

Encoding::Encoding(const std::string& code_page) : name_(code_page) {
  IcuConverter icu(name_);
  if (violates_contract(icu.type()))
    throw CvtExceptionBase("its converter drops text, or its output depends on how the text is split");
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
