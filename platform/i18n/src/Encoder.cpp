#include "Encoder.hpp"

#include "controls.hpp"

#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <array>

namespace ku::i18n::detail {

Encoder::Encoder(const Encoding& encoding, bool tolerant) : encoding_(encoding), converter_(encoding.open()) {
  if (!tolerant) return;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setFromUCallBack(converter_.get(), substitute, this, nullptr, nullptr, &status);
  check(status);
}

conversion_step Encoder::convert(const char16_t* units, std::size_t count, bool last, char* to, std::size_t room) {
  if (!encoding_.exchanges_controls()) return convert_slice(units, count, last, to, room);
  std::array<char16_t, 4096> exchanged;
  const std::size_t slice = std::min(count, exchanged.size());
  std::transform(units, units + slice, exchanged.begin(), control_to_icu);
  auto step = convert_slice(exchanged.data(), slice, last && slice == count, to, room);
  step.done = step.done && slice == count;
  return step;
}

conversion_step Encoder::convert_slice(const char16_t* units, std::size_t count, bool last, char* to,
                                       std::size_t room) {
  const auto* from = units;
  auto* end = to;
  const std::size_t slice = std::min(count, icu_slice);
  UErrorCode status = U_ZERO_ERROR;
  ucnv_fromUnicode(converter_.get(), &end, to + std::min(room, icu_slice), &from, units + slice, nullptr,
                   last && slice == count, &status);
  const bool full = status == U_BUFFER_OVERFLOW_ERROR;
  if (!full) check(status);
  const auto taken = static_cast<std::size_t>(from - units);
  return {taken, static_cast<std::size_t>(end - to), !full && taken == count};
}

void U_CALLCONV Encoder::substitute(const void* encoder, UConverterFromUnicodeArgs* arguments, const char16_t*,
                                    std::int32_t, UChar32, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  auto* const self = const_cast<Encoder*>(static_cast<const Encoder*>(encoder));
  self->substituted_ = true;
  *status = U_ZERO_ERROR;
  const char16_t unit = self->encoding_.substitute();
  const char16_t* replacement = &unit;
  ucnv_cbFromUWriteUChars(arguments, &replacement, replacement + 1, 0, status);
}

}  // namespace ku::i18n::detail
