#pragma once

#include "converters/Spelling.hpp"
#include "converters/cursor.hpp"

#include <unicode/ucnv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ku::i18n::detail {

/// Raises the exception for a failed ICU status: `std::bad_alloc`, `CvtInvalidCharacter` or `CvtExceptionBase`.
void check(UErrorCode status);

/// An ICU converter that uses no fallback mappings and, unlike ICU's stock callbacks, never drops default-ignorable
/// characters.
class IcuConverter {
public:
  /// One substitution of a tolerant converter.
  struct Substitution {
    std::size_t unit;      ///< decoding: the position of U+FFFD in the output of the call
    std::uint32_t length;  ///< decoding: the number of bytes of the malformed sequence
    char32_t character;    ///< encoding: the character that the encoding lacks
  };

  /// Strict.
  /// Requires: `name`, the name of a code page, outlives the converter.
  explicit IcuConverter(const std::string& name);
  /// Tolerant: writes U+FFFD for malformed input and `substitute` for characters that the encoding lacks.
  IcuConverter(const std::string& name, char16_t substitute);
  IcuConverter(const IcuConverter&) = delete;
  IcuConverter& operator=(const IcuConverter&) = delete;

  /// Consumes at most `count` units of the cursor; `last` says that the text ends with them. Returns whether all of
  /// them are consumed and their output is written.
  bool decode(DecodingCursor& cursor, std::size_t count, bool last);
  bool encode(EncodingCursor& cursor, std::size_t count, bool last);

  /// Converts a whole text, from the initial state.
  std::u16string decode_whole(const char* bytes, std::size_t count);
  std::string encode_whole(const char16_t* units, std::size_t count);

  /// Converts the whole cursor, from the initial state, and returns the ICU status instead of raising an exception.
  UErrorCode try_decode(DecodingCursor& cursor, bool last);
  UErrorCode try_encode(EncodingCursor& cursor, bool last);

  /// The length of the malformed sequence that made `try_decode` fail, in bytes.
  std::size_t malformed_length() const noexcept;

  /// Appends each later substitution to `list`, which must outlive the converter.
  void record_substitutions(std::vector<Substitution>& list) noexcept { record_ = &list; }

  /// How many units were consumed for which nothing has been written yet.
  std::size_t decoding_pending() const noexcept;
  std::size_t encoding_pending() const noexcept;
  /// Returns to the initial state.
  void restart_decoding() noexcept { ucnv_resetToUnicode(converter_.get()); }

  /// Whether it keeps no state from one character to the next.
  bool is_context_free() const noexcept;
  bool is_single_byte() const noexcept { return ucnv_getMaxCharSize(converter_.get()) == 1; }
  UConverterType type() const noexcept { return ucnv_getType(converter_.get()); }
  /// Whether a tolerant converter has substituted anything in the last whole text.
  bool has_substituted() const noexcept { return substituted_; }

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  // Peculiarities of ICU's tables that this converter reverses.
  enum class Exchange {
    none,
    controls,               // the PC code pages rotate 1A, 1C and 7F
    controls_and_won_sign,  // also has the won sign at 5C, where other programs have the backslash
  };

  static void U_CALLCONV stop_decoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                                       UConverterCallbackReason reason, UErrorCode* status);
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

  // For callbacks: writes the character in another spelling. Returns whether it did so or had no memory for it.
  bool spell(UConverterFromUnicodeArgs* arguments, UChar32 code, UConverterCallbackReason reason,
             UErrorCode* status) noexcept;

  // Whether the sequence that ICU calls malformed is a lead byte and an ASCII byte, which is text and not malformed.
  bool ends_with_ascii(const char* bytes, std::int32_t length) const noexcept;
  bool decodes_to(char byte, char16_t expected) noexcept;
  char16_t from_icu(char16_t unit) const noexcept;
  char16_t to_icu(char16_t unit) const noexcept;
  // Converts the unmappable character that ICU reports to that of the text.
  UChar32 unmappable(UChar32 code) const noexcept {
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
