#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ku::i18n::detail {

/// A character of well-formed UTF-8, and how many bytes it has there; none if the length is 0.
struct Utf8Character {
  std::uint32_t code = 0;
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

/// The character that text of at least one byte begins with.
inline Utf8Character first_character(const char* from, std::size_t count) {
  char padded[4] = {};  // a zero is no continuation
  if (count < 4) from = static_cast<const char*>(std::memcpy(padded, from, count));
  if (const auto character = first_short_character(from); character.length > 0) return character;
  std::uint32_t bytes;
  std::memcpy(&bytes, from, sizeof(bytes));
  const std::uint32_t code =
      (bytes & 0x07) << 18 | (bytes << 4 & 0x3F000) | (bytes >> 10 & 0xFC0) | (bytes >> 24 & 0x3F);
  const bool is_four = (bytes & 0xC0C0C0F8) == 0x808080F0 && code >= 0x10000 && code <= 0x10FFFF;
  return is_four ? Utf8Character{code, 4} : Utf8Character{};
}

}  // namespace ku::i18n::detail
