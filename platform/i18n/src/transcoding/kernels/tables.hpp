#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace ku::i18n::detail {

/// A table entry for one byte sequence or one character. The tables in the folder above look entries up when a text
/// first needs them; kernels only read them.
///
///     > 0    up to three bytes of the result, the first one lowest; their number in the highest byte
///     0      not looked up yet
///     < 0    special: a kind in bits 24 to 30, a value in bits 0 to 23
using Entry = std::int32_t;

/// Entries are stored once. They are stored with release order and loaded with acquire order, so that the long code
/// that an entry refers to is visible.
using AtomicEntry = std::atomic<Entry>;

enum class Kind : std::uint8_t {
  // decoding
  supplementary,  // a character beyond U+FFFF: the value
  prefix,         // the sequence is not complete
  malformed,      // as many bytes of the sequence as the value says are malformed
  // encoding
  long_code,   // more than three bytes: the value is their place in the list of long codes
  unmappable,  // the encoding lacks the character
  // both
  dependent  // depends on what follows, or is more than one character: ICU converts it each time
};

constexpr Entry special_entry(Kind kind, std::uint32_t value = 0) {
  return static_cast<Entry>(0x80000000U | std::uint32_t{static_cast<std::uint8_t>(kind)} << 24 | value);
}
constexpr Kind kind_of(Entry special) {
  return static_cast<Kind>((static_cast<std::uint32_t>(special) >> 24) & 0x7F);
}
constexpr std::uint32_t value_of(Entry special) { return static_cast<std::uint32_t>(special) & 0xFFFFFF; }
constexpr std::size_t length_of(Entry bytes) { return static_cast<std::uint32_t>(bytes) >> 24; }

/// From a byte sequence to UTF-8: the entries for each byte that may follow a certain prefix.
struct DecodeNode {
  using Children = std::array<std::atomic<const DecodeNode*>, 256>;

  /// A node without entries, and the children of a node that has none. They save the kernels a null check.
  /// @{
  static const DecodeNode none;
  static const Children no_children;
  /// @}

  std::array<AtomicEntry, 256> entries{};
  /// For each entry that is a prefix, the node of the next byte; `none` for the others.
  std::atomic<const Children*> children{&no_children};

  Entry entry(unsigned byte) const noexcept { return entries[byte].load(std::memory_order_acquire); }
  const DecodeNode& child(unsigned byte) const noexcept {
    return *(*children.load(std::memory_order_acquire))[byte].load(std::memory_order_acquire);
  }
};

/// From a character to bytes: rows of 2048 characters, as many as UTF-8 encodes in up to two bytes. A row that has
/// not been needed yet is `none`, whose entries are all 0. This saves a null check.
struct EncodeRows {
  static constexpr unsigned row_size = 2048;
  static constexpr unsigned rows = 0x110000 / row_size;
  using Row = std::array<AtomicEntry, row_size>;

  static const Row none;

  EncodeRows() {
    for (auto& row : all) row.store(&none, std::memory_order_relaxed);
  }

  const Row& row(unsigned index) const noexcept { return *all[index].load(std::memory_order_acquire); }
  Entry entry(char32_t code) const noexcept {
    return row(code / row_size)[code % row_size].load(std::memory_order_acquire);
  }

  /// Up to seven bytes, the first one lowest; their number in the highest byte.
  std::uint64_t long_code(std::uint32_t place) const noexcept {
    return (*long_codes[place / long_codes_size].load(std::memory_order_acquire))[place % long_codes_size];
  }

  std::array<std::atomic<const Row*>, rows> all;

  /// For a single-byte code page, the byte of each character up to U+FFFF that has been looked up; zero for the
  /// others. The same as the entries, but found in one lookup and in less memory. Null before the first character.
  using Bytes = std::array<std::atomic<std::uint8_t>, 0x10000>;
  std::atomic<const Bytes*> bytes{nullptr};

  static constexpr unsigned long_codes_size = 1024;
  using LongCodes = std::array<std::uint64_t, long_codes_size>;
  std::array<std::atomic<LongCodes*>, 0x110000 / long_codes_size> long_codes{};
};

}  // namespace ku::i18n::detail
