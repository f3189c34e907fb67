#pragma once

#include <ku/i18n/CvtException.hpp>

#include <cstddef>
#include <memory>
#include <string>

namespace ku::i18n {

namespace detail {
class IcuConverter;
}

/// Converts bytes in a named encoding to UTF-16.
///
/// Encodings  Every name or alias of a code page in docs/codepages.md and of the code pages of ICU. "CP" and a number
///            name the Windows page of that number. The empty name is the local code page: the encoding of
///            `ZrLocale::global()` at construction. Names with converter options (a comma) are refused. So are
///            encodings whose converter drops text (HZ, ISCII, X11 compound text) or whose output depends on how the
///            text is split (SCSU, LMBCS). docs/codepages.md lists the characters of each encoding.
/// Strict     Raises `CvtInvalidCharacter` for malformed or incomplete input and for a character that the target
///            lacks. No fallback mappings are used and nothing is dropped, not even invisible characters and
///            byte-order marks. A character without a code is written as a canonically equivalent sequence of letter
///            and accents if all of these have codes (Vietnamese in windows-1258). Only UTF-16 and UTF-32 without a
///            byte order in their names interpret a leading byte-order mark.
/// Tolerant   Writes one U+FFFD for each malformed sequence and for each character that the target lacks, and
///            continues. If the target lacks U+FFFD it writes "?", and if it lacks that too, the fullwidth form
///            U+FF1F.
/// ASCII      Bytes below 0x80, controls included, keep their values in every superset of ASCII.
/// Errors     The constructor raises `CvtExceptionBase`, and never `CvtInvalidCharacter`, if it refuses the encoding.
///            Every member may raise `std::bad_alloc`. After an exception from `convert`, the converter is usable.
/// Threads    Distinct converters are independent; one converter may be used by one thread at a time.
class [[gnu::visibility("default")]] codecvt_string_to_ustring {
public:
  /// A converter from `encoding`, tolerant or strict.
  codecvt_string_to_ustring(const std::string& encoding, bool tolerant);
  ~codecvt_string_to_ustring();
  codecvt_string_to_ustring(const codecvt_string_to_ustring&) = delete;
  codecvt_string_to_ustring& operator=(const codecvt_string_to_ustring&) = delete;

  /// Converts exactly `count` bytes, zero bytes included, as a complete text.
  /// Requires: `bytes` points to `count` bytes; it may be null if `count` is 0.
  std::u16string convert(const char* bytes, std::size_t count);

private:
  std::unique_ptr<detail::IcuConverter> icu_;
};

/// Converts UTF-16 to bytes in a named encoding. What is said of `codecvt_string_to_ustring` applies here as well.
class [[gnu::visibility("default")]] codecvt_ustring_to_string {
public:
  /// A converter to `encoding`, tolerant or strict.
  codecvt_ustring_to_string(const std::string& encoding, bool tolerant);
  ~codecvt_ustring_to_string();
  codecvt_ustring_to_string(const codecvt_ustring_to_string&) = delete;
  codecvt_ustring_to_string& operator=(const codecvt_ustring_to_string&) = delete;

  /// Converts exactly `count` units, as a complete text.
  /// Requires: `units` points to `count` units; it may be null if `count` is 0.
  std::string convert(const char16_t* units, std::size_t count);

private:
  std::unique_ptr<detail::IcuConverter> icu_;
};

/// Converts ASCII bytes to UTF-16.
///
/// Threads  Has no state; any thread may use it at any time.
class [[gnu::visibility("default")]] codecvt_ascii_to_ustring {
public:
  /// Converts exactly `count` bytes. Raises `CvtInvalidCharacter` for a byte above 0x7F.
  /// Requires: `bytes` points to `count` bytes; it may be null if `count` is 0.
  std::u16string convert(const char* bytes, std::size_t count) const;
};

}  // namespace ku::i18n
