#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace ku::i18n {

/// Why a conversion, or the making of a converter, failed. Its text is a constant.
class [[gnu::visibility("default")]] CvtExceptionBase : public std::exception {
public:
  /// Requires: `what` lives as long as the program.
  explicit CvtExceptionBase(const char* what) noexcept : what_(what) {}
  CvtExceptionBase(const CvtExceptionBase&) = default;
  CvtExceptionBase& operator=(const CvtExceptionBase&) = default;
  ~CvtExceptionBase() override;
  const char* what() const noexcept override;

private:
  const char* what_;
};

/// Input that a strict converter cannot convert: malformed, cut off, or without a counterpart in the target.
class [[gnu::visibility("default")]] CvtInvalidCharacter : public CvtExceptionBase {
public:
  CvtInvalidCharacter() noexcept;
  CvtInvalidCharacter(const CvtInvalidCharacter&) = default;
  CvtInvalidCharacter& operator=(const CvtInvalidCharacter&) = default;
  ~CvtInvalidCharacter() override;
};

namespace detail {
template <class Direction>
class Converter;
struct ToUnicode;
struct FromUnicode;
}  // namespace detail

class codecvt_ustring_to_string;

/// What both converters below have in common.
///
/// Encodings  Any name or alias that ICU has for a code page; the empty name is the local code page, the encoding
///            of `ZrLocale::global()` at that moment. Refused are names with converter options (a comma) and
///            encodings whose converter drops text.
/// Strict     Raises `CvtInvalidCharacter` at the first unit that cannot be converted; no look-alikes are taken
///            and nothing is dropped, invisible characters and byte-order marks included.
/// Tolerant   Puts one U+FFFD in place of each such unit and goes on; where the target has none, "?", and where that
///            is missing too, its wide form U+FF1F.
/// ASCII      Bytes below 0x80 keep their values, controls included, in every superset of ASCII.
/// Threads    Distinct converters are independent; one converter serves one thread at a time.
///
/// `convert` takes a whole text and begins afresh. `convert_some` takes it piece by piece, the pieces may end
/// anywhere, and results do not depend on where (but for SCSU and LMBCS, where text has many forms). Begin with a new
/// converter, or after a call with `last` that has taken everything.
struct conversion_step {
  std::size_t taken;   ///< input units that need not be offered again
  std::size_t placed;  ///< output units written
  /// All input is taken and all of its output is placed. If not, call again with more room and the rest of the input.
  bool done;
};

/// Converts bytes in a named encoding to UTF-16.
class [[gnu::visibility("default")]] codecvt_string_to_ustring {
public:
  /// Raises `CvtExceptionBase` itself if no converter can be made for the name, or `std::bad_alloc`.
  codecvt_string_to_ustring(const std::string& encoding, bool tolerant);
  ~codecvt_string_to_ustring();
  codecvt_string_to_ustring(const codecvt_string_to_ustring&) = delete;
  codecvt_string_to_ustring& operator=(const codecvt_string_to_ustring&) = delete;

  /// Converts exactly `count` bytes, zero bytes included.
  /// Requires: `bytes` points to as many; it may be null if `count` is 0.
  std::u16string convert(const char* bytes, std::size_t count);

  conversion_step convert_some(const char* bytes, std::size_t count, bool last, char16_t* to, std::size_t room);

  /// Whether the tolerant converter has put a substitute in place of anything since it was made.
  bool has_substituted() const noexcept;

private:
  friend std::size_t copy_alike(const codecvt_string_to_ustring& source, const codecvt_ustring_to_string& target,
                                const char* bytes, std::size_t count, char* to);

  std::unique_ptr<detail::Converter<detail::ToUnicode>> decoder_;
};

/// Converts UTF-16 to bytes in a named encoding.
class [[gnu::visibility("default")]] codecvt_ustring_to_string {
public:
  /// Raises `CvtExceptionBase` itself if no converter can be made for the name, or `std::bad_alloc`.
  codecvt_ustring_to_string(const std::string& encoding, bool tolerant);
  ~codecvt_ustring_to_string();
  codecvt_ustring_to_string(const codecvt_ustring_to_string&) = delete;
  codecvt_ustring_to_string& operator=(const codecvt_ustring_to_string&) = delete;

  /// Converts exactly `count` units, zero units included.
  /// Requires: `units` points to as many; it may be null if `count` is 0.
  std::string convert(const char16_t* units, std::size_t count);

  conversion_step convert_some(const char16_t* units, std::size_t count, bool last, char* to, std::size_t room);

  /// Whether the tolerant converter has put a substitute in place of anything since it was made.
  bool has_substituted() const noexcept;

private:
  friend std::size_t copy_alike(const codecvt_string_to_ustring& source, const codecvt_ustring_to_string& target,
                                const char* bytes, std::size_t count, char* to);

  std::unique_ptr<detail::Converter<detail::FromUnicode>> encoder_;
};

/// Copies the start of a text that is the same bytes in the encodings of both converters, and returns its length; 0
/// while one of them is within a character, or if there is nothing that they are known to have in common.
/// Requires: there is room for `count` bytes at `to`.
[[gnu::visibility("default")]] std::size_t copy_alike(const codecvt_string_to_ustring& source,
                                                      const codecvt_ustring_to_string& target, const char* bytes,
                                                      std::size_t count, char* to);

/// Widens ASCII bytes to UTF-16.
///
/// Threads  Has no state; may be used by any thread at any time.
class [[gnu::visibility("default")]] codecvt_ascii_to_ustring {
public:
  /// Raises `CvtInvalidCharacter` for a byte above 0x7F.
  std::u16string convert(const char* bytes, std::size_t count) const;
};

}  // namespace ku::i18n
