#pragma once

#include "Encoding.hpp"

#include <ku/i18n/codecvt.hpp>

namespace ku::i18n::detail {

/// UTF-16 to bytes of one encoding, piece by piece.
class Encoder {
public:
  Encoder(const Encoding& encoding, bool tolerant);
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  void reset() noexcept { ucnv_resetFromUnicode(converter_.get()); }
  conversion_step convert(const char16_t* units, std::size_t count, bool last, char* to, std::size_t room);
  bool has_substituted() const noexcept { return substituted_; }

private:
  conversion_step convert_slice(const char16_t* units, std::size_t count, bool last, char* to, std::size_t room);
  static void U_CALLCONV substitute(const void* encoder, UConverterFromUnicodeArgs* arguments, const char16_t*,
                                    std::int32_t, UChar32, UConverterCallbackReason reason, UErrorCode* status);

  const Encoding& encoding_;
  ConverterHandle converter_;
  bool substituted_ = false;
};

}  // namespace ku::i18n::detail
