#include "Decoder.hpp"

#include "controls.hpp"

#include <unicode/ucnv_cb.h>

#include <algorithm>

namespace ku::i18n::detail {

Decoder::Decoder(const Encoding& encoding, bool tolerant) : encoding_(encoding), converter_(encoding.open()) {
  if (!tolerant) return;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter_.get(), substitute, this, nullptr, nullptr, &status);
  check(status);
}

conversion_step Decoder::convert(const char* bytes, std::size_t count, bool last, char16_t* to, std::size_t room) {
  const auto* from = bytes;
  auto* end = to;
  const std::size_t slice = std::min(count, icu_slice);
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter_.get(), &end, to + std::min(room, icu_slice), &from, bytes + slice, nullptr,
                 last && slice == count, &status);
  const bool full = status == U_BUFFER_OVERFLOW_ERROR;
  if (!full) check(status);
  if (encoding_.exchanges_controls()) std::transform(to, end, to, control_from_icu);
  const auto taken = static_cast<std::size_t>(from - bytes);
  return {taken, static_cast<std::size_t>(end - to), !full && taken == count};
}

void U_CALLCONV Decoder::substitute(const void* decoder, UConverterToUnicodeArgs* arguments, const char*,
                                    std::int32_t, UConverterCallbackReason reason, UErrorCode* status) {
  if (reason > UCNV_IRREGULAR) return;
  const_cast<Decoder*>(static_cast<const Decoder*>(decoder))->substituted_ = true;
  const char16_t replacement = 0xFFFD;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

}  // namespace ku::i18n::detail
