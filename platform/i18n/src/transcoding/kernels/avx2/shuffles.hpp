#pragma once

#include <array>
#include <cstdint>

namespace ku::i18n::detail::avx2 {

/// Which byte of a register comes to each of its places; zero at those behind the last one.
struct alignas(16) Shuffle {
  std::array<std::uint8_t, 16> from;
};
using Shuffles = std::array<Shuffle, 256>;

/// For each mask of 8 bits, the shuffle that moves the bytes together for which `keeps(mask, byte)`.
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

/// Of the first eight bytes, those whose bit is set.
inline constexpr Shuffles bytes_kept =
    make_shuffles([](unsigned mask, unsigned byte) { return byte < 8 && (mask >> byte & 1) != 0; });

/// Of eight units of UTF-16, those whose bit is set.
inline constexpr Shuffles units_kept =
    make_shuffles([](unsigned mask, unsigned byte) { return (mask >> byte / 2 & 1) != 0; });

/// Of eight words of two bytes, the first byte, and the second if the word's bit is set.
inline constexpr Shuffles one_or_two_bytes =
    make_shuffles([](unsigned mask, unsigned byte) { return byte % 2 == 0 || (mask >> byte / 2 & 1) != 0; });

/// Of four words of four bytes, the first byte, the second if the lower one of the word's two bits is set, the third
/// if the upper one is.
inline constexpr Shuffles up_to_three_bytes = make_shuffles([](unsigned mask, unsigned byte) {
  const unsigned bits = mask >> byte / 4 * 2;
  return byte % 4 == 0 || (byte % 4 == 1 && (bits & 1) != 0) || (byte % 4 == 2 && (bits & 2) != 0);
});

}  // namespace ku::i18n::detail::avx2
