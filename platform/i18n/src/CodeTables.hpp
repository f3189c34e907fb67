#pragma once

#include "IcuConverter.hpp"
#include "LazyTable.hpp"
#include "cursor.hpp"

#include <cstdint>
#include <string>

namespace ku::i18n::detail {

/// What one code page of one or two bytes says of each character by itself, asked of ICU and kept.
///
/// Whatever depends on its neighbours, has more bytes, is no character of the page or lies beyond U+FFFF is not in
/// the tables: conversions stop there, and ICU goes on.
/// Threads  May be used by any number of threads.
class CodeTables {
public:
  /// For a code page whose converter has no state between characters.
  CodeTables(const std::string& name, bool exchanges_controls);

  void decode(DecodingCursor& cursor) const;
  void encode(EncodingCursor& cursor) const;

  /// Whether each ASCII byte is that ASCII character, and back.
  bool has_ascii() const noexcept { return has_ascii_; }

private:
  static constexpr char16_t not_here = 0xFFFF;  // a noncharacter, in no code page

  using DecodingRow = LazyTable<char16_t>::Row;
  using EncodingRow = LazyTable<std::uint32_t>::Row;

  DecodingRow ask_decoding(std::string prefix) const;
  EncodingRow ask_encoding(unsigned high) const;
  bool decode_pair(DecodingCursor& cursor) const;
  const DecodingRow& decoding_row(unsigned lead) const;
  const EncodingRow& encoding_row(unsigned high) const;

  std::string name_;
  bool exchanges_controls_;
  DecodingRow single_;  // by the only byte of a character
  bool is_single_;      // no byte begins a longer character
  bool has_ascii_;
  LazyTable<char16_t> pairs_;       // by the first byte of two, then the second
  LazyTable<std::uint32_t> units_;  // the length in the highest byte, the bytes from the lowest on; 0: not here
};

}  // namespace ku::i18n::detail
