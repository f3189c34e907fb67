#include "converters/Spelling.hpp"

#include "converters/IcuConverter.hpp"
#include "converters/code_pages.hpp"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <array>
#include <vector>

namespace ku::i18n::detail {
namespace {

// ICU has these data built in, so the pointer is never null.
const icu::Normalizer2& composition() {
  UErrorCode status = U_ZERO_ERROR;
  const auto* const normalizer = icu::Normalizer2::getNFCInstance(status);
  check(status);
  return *normalizer;
}

std::vector<UChar32> decompose(char32_t code) {
  icu::UnicodeString text;
  std::vector<UChar32> parts;
  if (!composition().getDecomposition(static_cast<UChar32>(code), text)) return parts;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) parts.push_back(text.char32At(at));
  return parts;
}

// Composes the base with the marks that are set in `mask`, and appends the other marks. The lowest bit is the first
// mark. The result is bogus if a mark does not compose.
icu::UnicodeString compose(const std::vector<UChar32>& parts, unsigned mask) {
  icu::UnicodeString text;
  UChar32 base = parts.front();
  icu::UnicodeString marks;
  for (std::size_t i = 1; i < parts.size() && base >= 0; ++i) {
    if (((mask >> (i - 1)) & 1U) != 0)
      base = composition().composePair(base, parts[i]);
    else
      marks.append(parts[i]);
  }
  if (base < 0)
    text.setToBogus();
  else
    text.append(base).append(marks);
  return text;
}

bool are_equivalent(const icu::UnicodeString& one, const icu::UnicodeString& other) {
  UErrorCode status = U_ZERO_ERROR;
  const bool same = composition().normalize(one, status) == composition().normalize(other, status);
  check(status);
  return same;
}

}  // namespace

std::u16string Spelling::find(char32_t code) {
  if (const char16_t other = find_respelling(code_page_, code); other != 0) return {other};
  const auto parts = decompose(code);
  constexpr std::size_t most_marks = 4;
  if (parts.size() < 2 || parts.size() > 1 + most_marks) return {};
  const unsigned masks = 1U << (parts.size() - 1);
  for (unsigned i = 1; i <= masks; ++i) {
    const auto text = compose(parts, masks - i);  // first with all marks composed, last with none
    if (text.isBogus() || text.countChar32() < 2) continue;
    std::u16string units(text.getBuffer(), static_cast<std::size_t>(text.length()));
    if (has_codes(units) && are_equivalent(text, icu::UnicodeString(static_cast<UChar32>(code)))) return units;
  }
  return {};
}

bool Spelling::has_codes(const std::u16string& text) {
  UErrorCode status = U_ZERO_ERROR;
  if (!probe_) {
    probe_.reset(open_converter(code_page_, status));
    check(status);
    ucnv_setFallback(probe_.get(), false);
    ucnv_setFromUCallBack(probe_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    check(status);
  }
  std::array<char, 64> bytes;
  ucnv_fromUChars(probe_.get(), bytes.data(), bytes.size(), text.data(), static_cast<std::int32_t>(text.size()),
                  &status);
  if (status == U_MEMORY_ALLOCATION_ERROR) check(status);
  return U_SUCCESS(status);
}

}  // namespace ku::i18n::detail
