#pragma once

#include "Encoding.hpp"

#include <ku/i18n/codecvt.hpp>

namespace ku::i18n::detail {

/// Bytes of one encoding to UTF-16, piece by piece.
class Decoder {
public:
  Decoder(const Encoding& encoding, bool tolerant);
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  void reset() noexcept { ucnv_resetToUnicode(converter_.get()); }
  conversion_step convert(const char* bytes, std::size_t count, bool last, char16_t* to, std::size_t room);
  bool has_substituted() const noexcept { return substituted_; }

private:
  static void U_CALLCONV substitute(const void* decoder, UConverterToUnicodeArgs* arguments, const char*,
                                    std::int32_t, UConverterCallbackReason reason, UErrorCode* status);

  const Encoding& encoding_;
  ConverterHandle converter_;
  bool substituted_ = false;
};

}  // namespace ku::i18n::detail
