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
/// Encodings  Any name or alias of a code page in docs/codepages.md, and of ICU's; "CP" and a number name the
///            Windows page of that number. The empty name is the local code page, the encoding of
///            `ZrLocale::global()` at that moment. Refused are names with converter options (a comma) and encodings
///            whose converter drops text (ISCII, X11 compound text) or spells it differently depending on where it is
///            cut (SCSU, LMBCS). docs/codepages.md tells what each encoding can express.
/// Strict     Raises `CvtInvalidCharacter` at the first unit that cannot be converted; no fallback mappings are used
///            and nothing is dropped, invisible characters and byte-order marks included. A character without a code
///            is written as a letter and accents where it is canonically equivalent to these, and they have codes
///            (Vietnamese in windows-1258). Only UTF-16 and UTF-32 without a byte order in their names take a leading
///            mark for their signature.
/// Tolerant   Puts one U+FFFD in place of each such unit and goes on; where the target has none, "?", and where that
///            is missing too, its wide form U+FF1F.
/// ASCII      Bytes below 0x80 keep their values, controls included, in every superset of ASCII.
/// Errors     The constructor raises `CvtExceptionBase` itself if it refuses the encoding. Everything may raise
///            `std::bad_alloc`.
/// Threads    Distinct converters are independent; one converter serves one thread at a time.
class [[gnu::visibility("default")]] codecvt_string_to_ustring {
public:
  /// A converter from `encoding`, tolerant or strict.
  codecvt_string_to_ustring(const std::string& encoding, bool tolerant);
  ~codecvt_string_to_ustring();
  codecvt_string_to_ustring(const codecvt_string_to_ustring&) = delete;
  codecvt_string_to_ustring& operator=(const codecvt_string_to_ustring&) = delete;

  /// Converts exactly `count` bytes, zero bytes included, as a text of their own.
  /// Requires: `bytes` points to as many; it may be null if `count` is 0.
  std::u16string convert(const char* bytes, std::size_t count);

private:
  std::unique_ptr<detail::IcuConverter> icu_;
};

/// Converts UTF-16 to bytes in a named encoding: the counterpart of `codecvt_string_to_ustring`, of which everything
/// holds here, too.
class [[gnu::visibility("default")]] codecvt_ustring_to_string {
public:
  /// A converter to `encoding`, tolerant or strict.
  codecvt_ustring_to_string(const std::string& encoding, bool tolerant);
  ~codecvt_ustring_to_string();
  codecvt_ustring_to_string(const codecvt_ustring_to_string&) = delete;
  codecvt_ustring_to_string& operator=(const codecvt_ustring_to_string&) = delete;

  /// Converts exactly `count` units, as a text of their own.
  /// Requires: `units` points to as many; it may be null if `count` is 0.
  std::string convert(const char16_t* units, std::size_t count);

private:
  std::unique_ptr<detail::IcuConverter> icu_;
};

/// Widens ASCII bytes to UTF-16.
///
/// Threads  Has no state; may be used by any thread at any time.
class [[gnu::visibility("default")]] codecvt_ascii_to_ustring {
public:
  /// Raises `CvtInvalidCharacter` for a byte above 0x7F.
  std::u16string convert(const char* bytes, std::size_t count) const;
};

}  // namespace ku::i18n
