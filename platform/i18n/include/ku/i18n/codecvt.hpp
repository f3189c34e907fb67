#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace ku::i18n {

/// Why a conversion, or the making of a converter, failed. Where an encoding is refused, its text names it.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtExceptionBase : public std::exception {
public:
  /// Requires: `what` lives as long as the program.
  explicit CvtExceptionBase(const char* what) noexcept : what_(what) {}
  /// Keeps a copy of the text, up to its first zero byte for `what()`. May raise `std::bad_alloc`.
  explicit CvtExceptionBase(const std::string& what)
      : text_(std::make_shared<const std::string>(what)), what_(text_->c_str()) {}
  /// Copies share the text.
  /// @{
  CvtExceptionBase(const CvtExceptionBase&) = default;
  CvtExceptionBase& operator=(const CvtExceptionBase&) = default;
  /// @}
  ~CvtExceptionBase() override;
  /// Lives as long as the exception or a copy of it.
  const char* what() const noexcept override;

private:
  std::shared_ptr<const std::string> text_;  // null for a constant
  const char* what_;
};

/// Input that a strict converter cannot convert: malformed, cut off, or without a counterpart in the target.
///
/// Threads  Immutable; may be used by several threads.
class [[gnu::visibility("default")]] CvtInvalidCharacter : public CvtExceptionBase {
public:
  CvtInvalidCharacter() noexcept;
  /// Copies share the text.
  /// @{
  CvtInvalidCharacter(const CvtInvalidCharacter&) = default;
  CvtInvalidCharacter& operator=(const CvtInvalidCharacter&) = default;
  /// @}
  ~CvtInvalidCharacter() override;
};

/// How far a step of a conversion has come.
struct conversion_step {
  std::size_t taken;   ///< input units that must not be offered again
  std::size_t placed;  ///< output units written
  /// All input is taken, and all that can be placed of it is. If not, call again with more room and the rest.
  bool done;
};

class codecvt_string_to_ustring;
class codecvt_ustring_to_string;

namespace detail {
class Encoding;
class IcuConverter;

/// What the converters below have in common. Not for use by itself.
class [[gnu::visibility("default")]] CvtBase {
public:
  CvtBase(const CvtBase&) = delete;
  CvtBase& operator=(const CvtBase&) = delete;

  /// Whether the tolerant converter has put a substitute in place of anything since it was made.
  bool has_substituted() const noexcept;

protected:
  /// For the encoding of that name; `tolerant` as the derived converter tells.
  CvtBase(const std::string& encoding, bool tolerant);
  ~CvtBase();

  /// What only the library's own code looks at.
  /// @{
  [[gnu::visibility("hidden")]] IcuConverter& icu();

  const Encoding& encoding_;
  bool tolerant_;
  std::unique_ptr<IcuConverter> icu_;
  /// @}
};
}  // namespace detail

/// Converts bytes in a named encoding to UTF-16.
///
/// Encodings  Any name or alias that ICU has for a code page; the empty name is the local code page, the encoding
///            of `ZrLocale::global()` at that moment. Refused are names with converter options (a comma) and
///            encodings whose converter drops text (ISCII, X11 compound text) or spells it differently depending on
///            where it is cut (SCSU, LMBCS). docs/codepages.md tells what each encoding can express.
/// Strict     Raises `CvtInvalidCharacter` at the first unit that cannot be converted; no look-alikes are taken
///            and nothing is dropped, invisible characters and byte-order marks included; only UTF-16 and UTF-32
///            without a byte order in their names take a leading mark for their signature.
/// Tolerant   Puts one U+FFFD in place of each such unit and goes on; where the target has none, "?", and where that
///            is missing too, its wide form U+FF1F.
/// ASCII      Bytes below 0x80 keep their values, controls included, in every superset of ASCII.
/// Errors     The constructor raises `CvtExceptionBase` itself if it refuses the encoding. Everything may raise
///            `std::bad_alloc`.
/// Threads    Distinct converters are independent; one converter serves one thread at a time.
class [[gnu::visibility("default")]] codecvt_string_to_ustring : public detail::CvtBase {
public:
  /// A converter from `encoding`, tolerant or strict.
  codecvt_string_to_ustring(const std::string& encoding, bool tolerant) : CvtBase(encoding, tolerant) {}

  /// Converts exactly `count` bytes, zero bytes included, as a text of their own.
  /// Requires: `bytes` points to as many; it may be null if `count` is 0.
  std::u16string convert(const char* bytes, std::size_t count);

  /// Converts a text piece by piece, the `last` of them so marked. Pieces may end anywhere, and what becomes of the
  /// text does not depend on where. Begin with a new converter.
  /// Requires: there is room for `room` units at `to`.
  conversion_step convert_some(const char* bytes, std::size_t count, bool last, char16_t* to, std::size_t room);

  /// Whether no part of a character has been taken without its rest.
  bool is_between_characters() const noexcept;

private:
  friend conversion_step convert_directly(const codecvt_string_to_ustring& source,
                                          const codecvt_ustring_to_string& target, const char* bytes,
                                          std::size_t count, char* to, std::size_t room) noexcept;
};

/// Converts UTF-16 to bytes in a named encoding: the counterpart of `codecvt_string_to_ustring`, of which everything
/// holds here, too.
class [[gnu::visibility("default")]] codecvt_ustring_to_string : public detail::CvtBase {
public:
  /// A converter to `encoding`, tolerant or strict.
  codecvt_ustring_to_string(const std::string& encoding, bool tolerant) : CvtBase(encoding, tolerant) {}

  /// As there, with 16-bit units for bytes and bytes for units.
  /// @{
  std::string convert(const char16_t* units, std::size_t count);
  conversion_step convert_some(const char16_t* units, std::size_t count, bool last, char* to, std::size_t room);
  bool is_between_characters() const noexcept;
  /// @}

private:
  friend conversion_step convert_directly(const codecvt_string_to_ustring& source,
                                          const codecvt_ustring_to_string& target, const char* bytes,
                                          std::size_t count, char* to, std::size_t room) noexcept;
};

/// Converts the start of a text from the encoding of `source` to that of `target` without a way through UTF-16, which
/// is faster. Stops at the first character that either may not know, and before the room runs out; at once while one
/// of them is within a character, and for pairs of encodings that have no direct way. From there on, take a piece
/// through both converters, then try again: the result is what they alone would give.
[[gnu::visibility("default")]] conversion_step convert_directly(const codecvt_string_to_ustring& source,
                                                                const codecvt_ustring_to_string& target,
                                                                const char* bytes, std::size_t count, char* to,
                                                                std::size_t room) noexcept;

/// Widens ASCII bytes to UTF-16.
///
/// Threads  Has no state; may be used by any thread at any time.
class [[gnu::visibility("default")]] codecvt_ascii_to_ustring {
public:
  /// Raises `CvtInvalidCharacter` for a byte above 0x7F.
  std::u16string convert(const char* bytes, std::size_t count) const;
};

}  // namespace ku::i18n
