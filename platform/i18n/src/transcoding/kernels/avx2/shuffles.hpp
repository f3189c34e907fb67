#pragma once

#include <array>
#include <cstdint>

namespace ku::i18n::detail::avx2 {

/// A shuffle of a register: for each byte of the result, the index of the source byte; 0x80 or more gives a zero
/// byte.
struct alignas(16) Shuffle {
  std::array<std::uint8_t, 16> from;
};
using Shuffles = std::array<Shuffle, 256>;

/// For each mask of 8 bits, the shuffle that packs the bytes for which `keeps(mask, byte)` is true to the front.
template <class Keeps>
constexpr Shuffles make_shuffles(Keeps keeps) {
  Shuffles result{};
  for (unsigned mask = 0; mask < result.size(); ++mask) {
    auto& from = result[mask].from;
    from.fill(0x80);
    std::size_t next = 0;
    for (unsigned byte = 0; byte < from.size(); ++byte)
      if (keeps(mask, byte)) from[next++] = static_cast<std::uint8_t>(byte);
  }
  return result;
}

/// In each half of a register, keeps those of its eight bytes whose bit is set.
inline constexpr Shuffles bytes_kept = [] {
  auto shuffles = make_shuffles([](unsigned mask, unsigned byte) { return byte < 8 && ((mask >> byte) & 1) != 0; });
  for (auto& shuffle : shuffles)
    for (std::size_t i = 0; i < 8; ++i) shuffle.from[i + 8] = static_cast<std::uint8_t>(shuffle.from[i] + 8);
  return shuffles;
}();

/// Keeps those of eight UTF-16 units whose bit is set.
inline constexpr Shuffles units_kept =
    make_shuffles([](unsigned mask, unsigned byte) { return ((mask >> (byte / 2)) & 1) != 0; });

/// Keeps the first byte of each of eight two-byte words, and the second byte if the word's bit is set.
inline constexpr Shuffles one_or_two_bytes =
    make_shuffles([](unsigned mask, unsigned byte) { return byte % 2 == 0 || ((mask >> (byte / 2)) & 1) != 0; });

/// Keeps the first byte of each of four four-byte words, the second byte if the lower of the word's two bits is set,
/// and the third byte if the upper bit is set.
inline constexpr Shuffles up_to_three_bytes = make_shuffles([](unsigned mask, unsigned byte) {
  const unsigned bits = mask >> (byte / 4 * 2);
  return byte % 4 == 0 || (byte % 4 == 1 && (bits & 1) != 0) || (byte % 4 == 2 && (bits & 2) != 0);
});

}  // namespace ku::i18n::detail::avx2
