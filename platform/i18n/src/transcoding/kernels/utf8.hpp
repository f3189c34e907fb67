#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {

/// A character of well-formed UTF-8 and its number of bytes; no character if the length is 0.
struct Utf8Character {
  char32_t code = 0;
  std::size_t length = 0;
};

inline bool is_continuation(char byte) { return (byte & 0xC0) == 0x80; }

/// The first character of a text, if it has at most three bytes. Requires: the text has four bytes or more.
inline Utf8Character first_short_character(const char* from) {
  std::uint32_t bytes;
  std::memcpy(&bytes, from, sizeof(bytes));
  if ((bytes & 0x80) == 0) return {bytes & 0x7F, 1};
  if ((bytes & 0xC0E0) == 0x80C0 && (bytes & 0x1E) != 0) return {(bytes & 0x1F) << 6 | ((bytes >> 8) & 0x3F), 2};
  const std::uint32_t code = (bytes & 0x0F) << 12 | ((bytes >> 2) & 0xFC0) | ((bytes >> 16) & 0x3F);
  const bool is_three = (bytes & 0xC0C0F0) == 0x8080E0 && code >= 0x800 && (code & 0xF800) != 0xD800;
  return is_three ? Utf8Character{code, 3} : Utf8Character{};
}

/// The first character of a text, if it has four bytes. Requires: the text has four bytes or more.
inline Utf8Character first_long_character(const char* from) {
  std::uint32_t bytes;
  std::memcpy(&bytes, from, sizeof(bytes));
  const std::uint32_t code =
      (bytes & 0x07) << 18 | ((bytes << 4) & 0x3F000) | ((bytes >> 10) & 0xFC0) | ((bytes >> 24) & 0x3F);
  const bool is_four = (bytes & 0xC0C0C0F8) == 0x808080F0 && code >= 0x10000 && code <= 0x10FFFF;
  return is_four ? Utf8Character{code, 4} : Utf8Character{};
}

/// The first character of a text. Requires: the text has four bytes or more.
inline Utf8Character first_whole_character(const char* from) {
  const auto character = first_short_character(from);
  return character.length > 0 ? character : first_long_character(from);
}

/// The first character of a text. Requires: the text has at least one byte.
inline Utf8Character first_character(const char* from, std::size_t count) {
  if (count >= 4) return first_whole_character(from);
  char padded[4] = {};  // a zero is not a continuation
  std::memcpy(padded, from, count);
  return first_whole_character(padded);
}

/// The length of the malformed sequence at the start of a text, as the Unicode standard recommends: the longest
/// prefix of a character, or one byte. It is the whole text if the text ends within a character. Requires:
/// `first_character` finds none, and `count` is not 0.
inline std::size_t malformed_utf8_length(const char* from, std::size_t count) {
  const auto first = static_cast<unsigned char>(from[0]);
  if (count < 2 || first < 0xC2 || first > 0xF4) return 1;
  const auto second = static_cast<unsigned char>(from[1]);
  unsigned least = 0x80, most = 0xBF;
  switch (first) {
    case 0xE0: least = 0xA0; break;
    case 0xED: most = 0x9F; break;
    case 0xF0: least = 0x90; break;
    case 0xF4: most = 0x8F; break;
    default: break;
  }
  if (second < least || second > most) return 1;
  return count >= 3 && first >= 0xF0 && is_continuation(from[2]) ? 3 : 2;
}

/// Whether a text is an incomplete character, to which more bytes may be added.
/// Requires: `malformed_utf8_length` says that all of it is malformed.
inline bool is_cut_utf8(const char* from, std::size_t count) {
  const auto first = static_cast<unsigned char>(from[0]);
  if (first < 0xC2 || first > 0xF4) return false;
  if (first < 0xE0) return count < 2;
  if (first < 0xF0) return count < 3;
  return count < 4;
}

/// Encodes a character in up to four bytes and returns their number. Always writes four bytes.
/// Requires: it is not a surrogate.
inline std::size_t put_utf8(char32_t code, char* to) {
  std::uint32_t bytes = code;
  std::size_t length = 1;
  if (code >= 0x10000) {
    bytes = (0xF0 | (code >> 18)) | ((0x80 | ((code >> 12) & 0x3F)) << 8) | ((0x80 | ((code >> 6) & 0x3F)) << 16) |
            ((0x80 | (code & 0x3F)) << 24);
    length = 4;
  } else if (code >= 0x800) {
    bytes = (0xE0 | (code >> 12)) | ((0x80 | ((code >> 6) & 0x3F)) << 8) | ((0x80 | (code & 0x3F)) << 16);
    length = 3;
  } else if (code >= 0x80) {
    bytes = (0xC0 | (code >> 6)) | ((0x80 | (code & 0x3F)) << 8);
    length = 2;
  }
  std::memcpy(to, &bytes, sizeof(bytes));
  return length;
}

}  // namespace ku::i18n::detail
