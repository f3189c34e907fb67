#pragma once

#include "converters/IcuConverter.hpp"
#include "transcoding/LazyTable.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>

namespace ku::i18n::detail {

/// What a code page says of each character by itself: asked of ICU once.
///
/// Whatever depends on its neighbours, is no character of the page or lies beyond U+FFFF is not in the tables.
/// A cell holds the bytes of a character, its first byte lowest, and their number in the highest byte; 0 if there is
/// no such character.
/// Threads  May be used by any number of threads.
class CodeTables {
public:
  using ByByte = LazyTable<std::uint32_t, 256, 256>;
  /// A row has as many units as UTF-8 has in two bytes.
  using ByUnit = LazyTable<std::uint32_t, 32, 2048>;

  /// For a code page whose converter has no state between characters.
  CodeTables(const std::string& name, bool exchanges_controls);

  bool is_superset_of_ascii() const noexcept { return is_superset_of_ascii_; }
  bool is_single_byte() const noexcept { return is_single_byte_; }

  /// UTF-8 by the only byte of a character.
  const ByByte::Row& singles() const noexcept { return singles_; }
  /// UTF-8 by the second byte of a character.
  const ByByte::Row& pairs(unsigned first) const {
    const auto* const row = pairs_.find(first);
    return row != nullptr ? *row : add_pairs(first);
  }
  /// Bytes of the code page by the lower bits of a UTF-16 unit.
  const ByUnit::Row& units(unsigned upper) const {
    const auto* const row = units_.find(upper);
    return row != nullptr ? *row : add_units(upper);
  }
  /// Bytes of the code page.
  std::uint32_t unit(char16_t code) const { return units(code / row_size)[code % row_size]; }

  static std::size_t length(std::uint32_t cell) noexcept { return cell >> 24; }

private:
  static constexpr unsigned row_size = std::tuple_size_v<ByUnit::Row>;

  ByByte::Row ask_utf8(std::string prefix) const;
  const ByByte::Row& add_pairs(unsigned first) const;
  const ByUnit::Row& add_units(unsigned upper) const;

  std::string name_;
  bool exchanges_controls_;
  ByByte::Row singles_;
  bool is_superset_of_ascii_;
  bool is_single_byte_;
  ByByte pairs_;
  ByUnit units_;
};

}  // namespace ku::i18n::detail
