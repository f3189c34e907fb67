#pragma once

#include <bit>
#include <cstddef>
#include <cstring>

namespace ku::i18n::detail {

constexpr bool is_surrogate(char32_t code) { return (code & 0xFFFFF800) == 0xD800; }
constexpr bool is_lead(char32_t code) { return (code & 0xFFFFFC00) == 0xD800; }
constexpr bool is_trail(char32_t code) { return (code & 0xFFFFFC00) == 0xDC00; }
/// The character of a pair of surrogates: lead 110110yyyyyyyyyy, trail 110111xxxxxxxxxx -> 0x10000 +
/// yyyyyyyyyyxxxxxxxxxx.
constexpr char32_t pair(char32_t lead, char32_t trail) { return 0x10000 + ((lead & 0x3FF) << 10) + (trail & 0x3FF); }
constexpr char16_t lead_of(char32_t code) { return static_cast<char16_t>(0xD7C0 + (code >> 10)); }
constexpr char16_t trail_of(char32_t code) { return static_cast<char16_t>(0xDC00 | (code & 0x3FF)); }

constexpr char16_t swapped(char16_t unit) { return static_cast<char16_t>(unit << 8 | unit >> 8); }
constexpr char32_t swapped(char32_t code) { return __builtin_bswap32(code); }

/// Reads or writes a unit of UTF-16 or UTF-32 in this byte order.
/// @{
template <class Unit, std::endian order>
Unit get_wide(const char* from) noexcept {
  Unit unit;
  std::memcpy(&unit, from, sizeof(unit));
  return order == std::endian::native ? unit : swapped(unit);
}

template <class Unit, std::endian order>
void put_wide(Unit unit, char* to) noexcept {
  if (order != std::endian::native) unit = swapped(unit);
  std::memcpy(to, &unit, sizeof(unit));
}
/// @}

}  // namespace ku::i18n::detail
