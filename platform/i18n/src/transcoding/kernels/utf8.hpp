#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {

/// A character of well-formed UTF-8, and how many bytes it has there; none if the length is 0.
struct Utf8Character {
  char32_t code = 0;
  std::size_t length = 0;
};

inline bool is_continuation(char byte) { return (byte & 0xC0) == 0x80; }

/// The character that text of four bytes or more begins with, if it has at most three bytes.
inline Utf8Character first_short_character(const char* from) {
  std::uint32_t bytes;
  std::memcpy(&bytes, from, sizeof(bytes));
  if ((bytes & 0x80) == 0) return {bytes & 0x7F, 1};
  if ((bytes & 0xC0E0) == 0x80C0 && (bytes & 0x1E) != 0) return {(bytes & 0x1F) << 6 | (bytes >> 8 & 0x3F), 2};
  const std::uint32_t code = (bytes & 0x0F) << 12 | (bytes >> 2 & 0xFC0) | (bytes >> 16 & 0x3F);
  const bool is_three = (bytes & 0xC0C0F0) == 0x8080E0 && code >= 0x800 && (code & 0xF800) != 0xD800;
  return is_three ? Utf8Character{code, 3} : Utf8Character{};
}

/// The character that text of four bytes or more begins with, if it has four bytes.
inline Utf8Character first_long_character(const char* from) {
  std::uint32_t bytes;
  std::memcpy(&bytes, from, sizeof(bytes));
  const std::uint32_t code =
      (bytes & 0x07) << 18 | (bytes << 4 & 0x3F000) | (bytes >> 10 & 0xFC0) | (bytes >> 24 & 0x3F);
  const bool is_four = (bytes & 0xC0C0C0F8) == 0x808080F0 && code >= 0x10000 && code <= 0x10FFFF;
  return is_four ? Utf8Character{code, 4} : Utf8Character{};
}

/// The character that text of four bytes or more begins with.
inline Utf8Character first_whole_character(const char* from) {
  const auto character = first_short_character(from);
  return character.length > 0 ? character : first_long_character(from);
}

/// The character that text of at least one byte begins with.
inline Utf8Character first_character(const char* from, std::size_t count) {
  char padded[4] = {};  // a zero is no continuation
  if (count < 4) from = static_cast<const char*>(std::memcpy(padded, from, count));
  return first_whole_character(from);
}

/// The length of the malformed sequence that a text begins with, as the Unicode standard recommends: the longest
/// start of a character, or one byte. It is the whole text if that ends within a character.
/// Requires: `first_character` finds none, and `count` is not 0.
inline std::size_t malformed_utf8_length(const char* from, std::size_t count) {
  const auto first = static_cast<unsigned char>(from[0]);
  if (count < 2 || first < 0xC2 || first > 0xF4) return 1;
  const auto second = static_cast<unsigned char>(from[1]);
  const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  if (second < least || second > most) return 1;
  return count >= 3 && first >= 0xF0 && is_continuation(from[2]) ? 3 : 2;
}

/// Whether a text could be the start of a character: what is cut off, not what is wrong.
/// Requires: `malformed_utf8_length` says that all of it is malformed.
inline bool is_cut_utf8(const char* from, std::size_t count) {
  const auto first = static_cast<unsigned char>(from[0]);
  if (first < 0xC2 || first > 0xF4) return false;
  return count < (first < 0xE0 ? 2U : first < 0xF0 ? 3U : 4U);
}

/// Writes a character, in up to four bytes, and returns how many. Four are written in any case.
/// Requires: it is not a surrogate.
inline std::size_t put_utf8(char32_t code, char* to) {
  std::uint32_t bytes = code;
  std::size_t length = 1;
  if (code >= 0x10000) {
    bytes = (0xF0 | code >> 18) | (0x80 | (code >> 12 & 0x3F)) << 8 | (0x80 | (code >> 6 & 0x3F)) << 16 |
            (0x80 | (code & 0x3F)) << 24;
    length = 4;
  } else if (code >= 0x800) {
    bytes = (0xE0 | code >> 12) | (0x80 | (code >> 6 & 0x3F)) << 8 | (0x80 | (code & 0x3F)) << 16;
    length = 3;
  } else if (code >= 0x80) {
    bytes = (0xC0 | code >> 6) | (0x80 | (code & 0x3F)) << 8;
    length = 2;
  }
  std::memcpy(to, &bytes, sizeof(bytes));
  return length;
}

}  // namespace ku::i18n::detail
