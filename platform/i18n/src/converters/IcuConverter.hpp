#pragma once

#include "converters/Spelling.hpp"
#include "converters/cursor.hpp"

#include <unicode/ucnv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ku::i18n::detail {

/// Raises what a failed ICU status stands for: `std::bad_alloc`, `CvtInvalidCharacter` or `CvtExceptionBase`.
void check(UErrorCode status);

/// A converter of ICU's that uses no fallback mappings and, unlike ICU's stock callbacks, never drops
/// default-ignorable characters.
class IcuConverter {
public:
  /// What a tolerant converter has put a substitute in place of.
  struct Substitution {
    std::size_t unit;      ///< decoding: where U+FFFD stands in the output of the call
    std::uint32_t length;  ///< decoding: the bytes of the malformed sequence
    char32_t character;    ///< encoding: what the encoding lacks
  };

  /// Strict.
  /// Requires: `name`, of a code page, outlives the converter.
  explicit IcuConverter(const std::string& name);
  /// Tolerant, putting U+FFFD in place of input, and `substitute` in place of output, that cannot be converted.
  IcuConverter(const std::string& name, char16_t substitute);
  IcuConverter(const IcuConverter&) = delete;
  IcuConverter& operator=(const IcuConverter&) = delete;

  /// Consumes at most `count` units of the cursor, the `last` of the text if so said. Returns whether that is done:
  /// all are consumed, and what they became is written.
  bool decode(DecodingCursor& cursor, std::size_t count, bool last);
  bool encode(EncodingCursor& cursor, std::size_t count, bool last);

  /// A whole text, from the start state.
  std::u16string decode_whole(const char* bytes, std::size_t count);
  std::string encode_whole(const char16_t* units, std::size_t count);

  /// The whole cursor, from the start state, without raising what they return.
  UErrorCode try_decode(DecodingCursor& cursor, bool last);
  UErrorCode try_encode(EncodingCursor& cursor, bool last);

  /// How many bytes are malformed, after `try_decode` has returned that something is.
  std::size_t malformed_length() const noexcept;

  /// Keeps in `list` what is substituted from now on. It must outlive the converter.
  void record_substitutions(std::vector<Substitution>& list) noexcept { record_ = &list; }

  /// How many units were consumed of which nothing has been written yet.
  std::size_t decoding_pending() const noexcept;
  std::size_t encoding_pending() const noexcept;
  /// Back to the start state.
  void restart_decoding() noexcept { ucnv_resetToUnicode(converter_.get()); }

  /// Whether it keeps no state from one character to the next.
  bool is_context_free() const noexcept;
  bool is_single_byte() const noexcept { return ucnv_getMaxCharSize(converter_.get()) == 1; }
  UConverterType type() const noexcept { return ucnv_getType(converter_.get()); }
  bool has_substituted() const noexcept { return substituted_; }

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  // What ICU has otherwise than the rest of the world does, and this converter undoes.
  enum class Exchange {
    none,
    controls,               // its PC code pages rotate 1A, 1C and 7F
    controls_and_won_sign,  // and has this in 5C, where others have the backslash
  };

  static void U_CALLCONV stop_decoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                                       UConverterCallbackReason, UErrorCode*) {}
  static void U_CALLCONV stop_encoding(const void* self, UConverterFromUnicodeArgs* arguments, const UChar*,
                                       std::int32_t, UChar32 code, UConverterCallbackReason reason,
                                       UErrorCode* status);
  static void U_CALLCONV substitute_input(const void* self, UConverterToUnicodeArgs* arguments, const char*,
                                          std::int32_t, UConverterCallbackReason reason, UErrorCode* status);
  static void U_CALLCONV substitute_output(const void* self, UConverterFromUnicodeArgs* arguments, const char16_t*,
                                           std::int32_t, UChar32 code, UConverterCallbackReason reason,
                                           UErrorCode* status);

  IcuConverter(const std::string& name, char16_t substitute, UConverterToUCallback decoding,
               UConverterFromUCallback encoding);

  // In a callback: whether the character has been written in another spelling, or there was no memory for that.
  bool spell(UConverterFromUnicodeArgs* arguments, UChar32 code, UConverterCallbackReason reason,
             UErrorCode* status) noexcept;

  // Whether a malformed sequence consists of a lead byte and an ASCII character, which is not a part of it.
  bool takes_ascii(const char* bytes, std::int32_t length) const noexcept;
  bool decodes_to(char byte, char16_t expected) noexcept;
  char16_t from_icu(char16_t unit) const noexcept;
  char16_t to_icu(char16_t unit) const noexcept;
  // The character that ICU finds lacking, as the text has it.
  UChar32 lacking(UChar32 code) const noexcept {
    return exchange_ == Exchange::none || code > 0xFFFF ? code : from_icu(static_cast<char16_t>(code));
  }
  void record(const Substitution& substitution, UErrorCode* status) noexcept;
  UErrorCode decode_slice(DecodingCursor& cursor, std::size_t slice, bool flush);
  UErrorCode encode_slice(EncodingCursor& cursor, std::size_t slice, bool flush);

  std::unique_ptr<UConverter, Close> converter_;
  Spelling spelling_;
  char16_t substitute_;
  Exchange exchange_ = Exchange::none;
  bool substitutes_bytes_ = false;  // stateless: the bytes of the substitute are always the same
  bool substituted_ = false;
  std::vector<Substitution>* record_ = nullptr;
  const char16_t* output_ = nullptr;  // of the current call of `decode`
};

}  // namespace ku::i18n::detail
