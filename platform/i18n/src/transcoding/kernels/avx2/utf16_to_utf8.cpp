#include "transcoding/kernels/avx2/kernels.hpp"
#include "transcoding/kernels/avx2/target.hpp"
#include "transcoding/kernels/avx2/units_to_utf8.hpp"

KU_AVX2_BEGIN
namespace ku::i18n::detail::avx2 {
namespace {

template <std::endian order>
__m256i load_units(const char* from) noexcept {
  const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  return order == std::endian::native ? units : any(_mm256_slli_epi16(units, 8), _mm256_srli_epi16(units, 8));
}

}  // namespace

// Converts 32 units of ASCII at a time, or 16 units of any kind; only 15 if the last one is the first unit of a
// surrogate pair.
//
// Invariant  `c.from` is at the start of a character; everything before it has been written.
// Reads      64 bytes; the loop ends before there are fewer.
// Writes     `most_written` bytes; the loop ends before there is less room.
// Measured   Western 8.6 GB/s, the kernel for all processors 3.5; Japanese 4.5 and 2.9; emoji 2.5 and 0.5.
template <std::endian order>
ByteCursor utf16_to_utf8(ByteCursor c) noexcept {
  constexpr std::size_t register_bytes = sizeof(__m256i);
  while (c.left() >= 2 * register_bytes && c.room() >= most_written) {
    const __m256i units = load_units<order>(c.from);
    const __m256i next = load_units<order>(c.from + register_bytes);
    if (have_no(any(units, next), 0xFF80)) {
      const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(units, next), 0b11011000);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(c.to), packed);
      c.from += 2 * register_bytes;
      c.to += register_bytes;
      continue;
    }
    if (have_no(units, 0xF800)) {
      c.to = put_short(units, c.to);
      c.from += register_bytes;
      continue;
    }
    const __m256i surrogates = _mm256_cmpeq_epi16(with_bits(units, 0xF800), all_units(0xD800));
    if (_mm256_testz_si256(surrogates, surrogates) != 0) {
      c.to = put_units<false>(units, surrogates, c.to);
      c.from += register_bytes;
      continue;
    }
    // The masks have two bits for each unit. A trail must follow each lead, except a lead at the end, which is not
    // converted yet.
    const __m256i is_trail = _mm256_cmpeq_epi16(with_bits(units, 0xFC00), all_units(0xDC00));
    const auto trails = static_cast<std::uint32_t>(_mm256_movemask_epi8(is_trail));
    const auto leads = static_cast<std::uint32_t>(_mm256_movemask_epi8(surrogates)) & ~trails;
    if (leads << 2 != trails) break;
    const std::uint32_t cut = (leads >> 31) * 2;  // bytes of a lead at the end
    c.to = put_units<true>(units, surrogates, c.to) - cut;
    c.from += register_bytes - cut;
  }
  return c;
}

template ByteCursor utf16_to_utf8<std::endian::little>(ByteCursor) noexcept;
template ByteCursor utf16_to_utf8<std::endian::big>(ByteCursor) noexcept;

}  // namespace ku::i18n::detail::avx2
KU_AVX2_END
