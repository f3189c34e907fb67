#include "transcoding/utf_decoders.hpp"

#include "transcoding/kernels/Utf8Block.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/wide.hpp"

#include <cstring>

namespace ku::i18n::detail {
namespace {

// Decodes a block of UTF-8 except its last character. Returns the number of bytes decoded; 0 if the block is
// malformed. The loop has no branch that depends on the lengths of the characters: where they vary, it would be
// mispredicted.
//
// Invariant  the character at `at` ends before the lowest bit of `starts`; all before it have been written.
// Reads      `Utf8Block::bytes_read`.
// Bits       of each length, as if it had four bytes: 11110www 10zzzzzz 10yyyyyy 10xxxxxx -> wwwzzzzzzyyyyyyxxxxxx
std::size_t decode_block(const char* from, std::uint64_t offset, CharacterBlock& to) noexcept {
  static constexpr std::uint32_t code_bits[] = {0, 0x7F, 0x7FF, 0xFFFF, 0x1FFFFF};
  const Utf8Block block(from);
  std::uint64_t due = 0;
  if (!block.is_well_formed(due)) return 0;
  std::size_t at = 0;
  to.add_some([&](Character* place) noexcept {
    for (std::uint64_t starts = block.all_starts() & ~std::uint64_t{1}; starts != 0; starts &= starts - 1) {
      const std::size_t length = first_bit(starts) - at;
      std::uint32_t bytes;
      std::memcpy(&bytes, from + at, sizeof(bytes));
      bytes = __builtin_bswap32(bytes);
      const std::uint32_t code =
          ((bytes >> 6) & 0x1FC0000) | ((bytes >> 4) & 0x3F000) | ((bytes >> 2) & 0xFC0) | (bytes & 0x3F);
      *place = {offset + at, (code >> (6 * (4 - length))) & code_bits[length], static_cast<std::uint32_t>(length) & 7,
                0};
      at += length;
      ++place;
    }
    return place;
  });
  return at;
}

class Utf8Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    std::size_t next_try = 0;  // where to try a block again; not at every character of malformed text
    while (at < count && !block.is_full()) {
      const char* const from = bytes + at;
      const std::size_t left = count - at;
      if (at >= next_try && left >= Utf8Block::bytes_read) {
        const auto decoded = decode_block(from, offset + at, block);
        if (decoded == 0) next_try = at + Utf8Block::size;
        at += decoded;
        continue;
      }
      auto [code, length] = first_character(from, left);
      const bool malformed = length == 0;
      if (malformed) {
        length = malformed_utf8_length(from, left);
        if (!last && length == left && is_cut_utf8(from, left)) break;
        code = 0xFFFD;
      }
      block.add(offset + at, code, length, malformed);
      at += length;
    }
    return at;
  }
};

template <std::endian order>
class Utf16Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    while (at < count && !block.is_full()) {
      const auto [code, length] = first(bytes + at, count - at, last);
      if (length == 0) break;
      block.add(offset + at, code == malformed ? U'\xFFFD' : code, length, code == malformed);
      at += length;
    }
    return at;
  }

private:
  static constexpr char32_t malformed = 0xFFFFFFFF;

  struct First {
    char32_t code;
    std::size_t length;
  };

  // The first character of the text; length 0 if more bytes are needed.
  static First first(const char* from, std::size_t left, bool last) noexcept {
    if (left < 2) return {malformed, last ? left : 0};
    const char32_t unit = get_wide<char16_t, order>(from);
    if (!is_surrogate(unit)) return {unit, 2};
    if (!is_lead(unit)) return {malformed, 2};
    if (left < 4) return {malformed, last ? left : 0};
    const char32_t trail = get_wide<char16_t, order>(from + 2);
    if (!is_trail(trail)) return {malformed, 2};
    return {pair(unit, trail), 4};
  }
};

template <std::endian order>
class Utf32Decoder final : public Decoder {
public:
  std::size_t decode(const char* bytes, std::size_t count, bool last, std::uint64_t offset,
                     CharacterBlock& block) override {
    std::size_t at = 0;
    for (; count - at >= 4 && !block.is_full(); at += 4) {
      const char32_t code = get_wide<char32_t, order>(bytes + at);
      const bool malformed = code > 0x10FFFF || is_surrogate(code);
      block.add(offset + at, malformed ? U'\xFFFD' : code, 4, malformed);
    }
    if (last && count - at < 4 && at < count && !block.is_full()) {
      block.add(offset + at, 0xFFFD, count - at, true);
      at = count;
    }
    return at;
  }
};

}  // namespace

std::unique_ptr<Decoder> make_utf_decoder(Encoding::Form form) {
  using Form = Encoding::Form;
  switch (form) {
    case Form::utf16_little_endian: return std::make_unique<Utf16Decoder<std::endian::little>>();
    case Form::utf16_big_endian: return std::make_unique<Utf16Decoder<std::endian::big>>();
    case Form::utf32_little_endian: return std::make_unique<Utf32Decoder<std::endian::little>>();
    case Form::utf32_big_endian: return std::make_unique<Utf32Decoder<std::endian::big>>();
    default: return std::make_unique<Utf8Decoder>();
  }
}

}  // namespace ku::i18n::detail
