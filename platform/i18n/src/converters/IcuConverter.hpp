#pragma once

#include "converters/cursor.hpp"

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace ku::i18n::detail {

/// Raises what a failed ICU status stands for: `std::bad_alloc`, `CvtInvalidCharacter` or `CvtExceptionBase`.
void check(UErrorCode status);

/// One converter of ICU's, without its look-alikes and without its habit to drop what cannot be seen.
class IcuConverter {
public:
  /// Strict. `exchanges_controls`: see `Encoding`.
  IcuConverter(const std::string& name, bool exchanges_controls);
  /// Tolerant, putting U+FFFD in place of input, and `substitute` in place of output, that cannot be converted.
  IcuConverter(const std::string& name, bool exchanges_controls, char16_t substitute);
  IcuConverter(const IcuConverter&) = delete;
  IcuConverter& operator=(const IcuConverter&) = delete;

  /// Takes at most `count` units from the cursor, the `last` of the text if so said. Returns whether that is done:
  /// all are taken, and what they became is placed.
  bool decode(DecodingCursor& cursor, std::size_t count, bool last);
  bool encode(EncodingCursor& cursor, std::size_t count, bool last);

  /// A whole text, from the start state.
  std::u16string decode_whole(const char* bytes, std::size_t count);
  std::string encode_whole(const char16_t* units, std::size_t count);

  /// The whole cursor, from the start state, without raising what they return.
  UErrorCode try_decode(DecodingCursor& cursor, bool last);
  UErrorCode try_encode(EncodingCursor& cursor, bool last);

  /// Whether units were taken of which nothing has been placed yet.
  bool is_decoding_pending() const noexcept;
  bool is_encoding_pending() const noexcept;

  /// Whether it keeps no state from one character to the next.
  bool is_context_free() const noexcept;
  bool is_single_byte() const noexcept { return ucnv_getMaxCharSize(converter_.get()) == 1; }
  UConverterType type() const noexcept { return ucnv_getType(converter_.get()); }
  bool has_substituted() const noexcept { return substituted_; }

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  static void U_CALLCONV stop_decoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                                       UConverterCallbackReason, UErrorCode*) {}
  static void U_CALLCONV stop_encoding(const void*, UConverterFromUnicodeArgs*, const UChar*, std::int32_t, UChar32,
                                       UConverterCallbackReason, UErrorCode*) {}
  static void U_CALLCONV substitute_input(const void* self, UConverterToUnicodeArgs* arguments, const char*,
                                          std::int32_t, UConverterCallbackReason reason, UErrorCode* status);
  static void U_CALLCONV substitute_output(const void* self, UConverterFromUnicodeArgs* arguments, const char16_t*,
                                           std::int32_t, UChar32, UConverterCallbackReason reason,
                                           UErrorCode* status);

  IcuConverter(const std::string& name, bool exchanges_controls, char16_t substitute, UConverterToUCallback decoding,
               UConverterFromUCallback encoding);

  UErrorCode decode_slice(DecodingCursor& cursor, std::size_t slice, bool flush);
  UErrorCode encode_slice(EncodingCursor& cursor, std::size_t slice, bool flush);

  std::unique_ptr<UConverter, Close> converter_;
  bool exchanges_controls_;
  char16_t substitute_;
  bool substitutes_bytes_ = false;  // and not by conversion, again and again
  bool substituted_ = false;
};

}  // namespace ku::i18n::detail
