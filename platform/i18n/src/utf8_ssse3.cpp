#include "utf8.hpp"

#include <array>
#include <cstdint>

#include <tmmintrin.h>

namespace ku::i18n::detail {
namespace {

/// How to close up eight characters of one or two bytes that lie in cells of two bytes.
struct Closing {
  std::array<std::int8_t, 16> order{};
  std::int8_t length = 0;
};

/// By the set of characters that have two bytes.
constexpr std::array<Closing, 256> closings = [] {
  std::array<Closing, 256> all{};
  for (unsigned set = 0; set < all.size(); ++set) {
    auto& [order, length] = all[set];
    order.fill(-1);
    for (unsigned character = 0; character < 8; ++character) {
      order[static_cast<unsigned>(length++)] = static_cast<std::int8_t>(2 * character);
      if (set >> character & 1) order[static_cast<unsigned>(length++)] = static_cast<std::int8_t>(2 * character + 1);
    }
  }
  return all;
}();

}  // namespace

[[gnu::target("ssse3")]] void encode_short_utf8_ssse3(EncodingCursor& c) {
  const __m128i zero = _mm_setzero_si128();
  const auto all = [](int value) { return _mm_set1_epi16(static_cast<short>(value)); };
  const __m128i beyond_ascii = all(0xFF80), beyond_short = all(0xF800), low_bits = all(0x3F), marks = all(0x80C0);
  while (c.left() >= 8 && c.room() >= 16) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(c.from));
    const __m128i is_ascii = _mm_cmpeq_epi16(_mm_and_si128(units, beyond_ascii), zero);
    const __m128i is_short = _mm_cmpeq_epi16(_mm_and_si128(units, beyond_short), zero);
    if (_mm_movemask_epi8(is_short) != 0xFFFF) return;
    // The lead byte in the lower half of each cell, the continuation in the upper.
    const __m128i leads = _mm_srli_epi16(units, 6);
    const __m128i continuations = _mm_slli_epi16(_mm_and_si128(units, low_bits), 8);
    const __m128i pairs = _mm_or_si128(_mm_or_si128(leads, continuations), marks);
    const __m128i cells = _mm_or_si128(_mm_and_si128(is_ascii, units), _mm_andnot_si128(is_ascii, pairs));
    const auto set = static_cast<unsigned>(~_mm_movemask_epi8(_mm_packs_epi16(is_ascii, zero))) & 0xFF;
    const auto& closing = closings[set];
    const __m128i order = _mm_loadu_si128(reinterpret_cast<const __m128i*>(closing.order.data()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(c.to), _mm_shuffle_epi8(cells, order));
    c.from += 8;
    c.to += closing.length;
  }
}

}  // namespace ku::i18n::detail
