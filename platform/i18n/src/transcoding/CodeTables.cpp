#include "transcoding/CodeTables.hpp"

#include <unicode/utf8.h>

#include <array>
#include <cstring>

namespace ku::i18n::detail {
namespace {

constexpr std::size_t longest = 3;

std::uint32_t cell_of(const char* bytes, std::size_t length) {
  if (length > longest) return 0;
  std::uint32_t cell = 0;
  std::memcpy(&cell, bytes, length);
  return cell | static_cast<std::uint32_t>(length) << 24;
}

std::uint32_t ask_cell(IcuConverter& icu, const std::string& bytes) {
  std::array<char16_t, 8> units{};
  DecodingCursor c{bytes.data(), bytes.data() + bytes.size(), units.data(), units.data() + units.size()};
  if (U_FAILURE(icu.try_decode(c, false)) || c.to != &units[1]) return 0;
  std::array<char, 4> utf8{};
  std::size_t length = 0;
  U8_APPEND_UNSAFE(utf8.data(), length, static_cast<UChar32>(units[0]));
  return cell_of(utf8.data(), length);
}

std::uint32_t ask_bytes(IcuConverter& icu, char16_t unit) {
  std::array<char, 16> bytes{};
  EncodingCursor c{&unit, &unit + 1, bytes.data(), bytes.data() + bytes.size()};
  if (U_FAILURE(icu.try_encode(c, false))) return 0;
  return cell_of(bytes.data(), static_cast<std::size_t>(c.to - bytes.data()));
}

}  // namespace

CodeTables::CodeTables(const std::string& name, bool exchanges_controls)
    : name_(name), exchanges_controls_(exchanges_controls), singles_(ask_utf8({})) {
  is_single_byte_ = IcuConverter(name_, exchanges_controls_).is_single_byte();
  is_superset_of_ascii_ = true;
  for (unsigned byte = 0; byte < 0x80; ++byte) {
    const auto itself = 1U << 24 | byte;
    const bool is_read = singles_[byte] == itself;
    const bool is_kept = is_read && unit(static_cast<char16_t>(byte)) == itself;  // not covered: none differs in that
    if (!is_kept) is_superset_of_ascii_ = false;
  }
}

CodeTables::ByByte::Row CodeTables::ask_utf8(std::string prefix) const {
  IcuConverter icu(name_, exchanges_controls_);
  ByByte::Row row;
  prefix.push_back('\0');
  for (unsigned byte = 0; byte < row.size(); ++byte) {
    prefix.back() = static_cast<char>(byte);
    row[byte] = ask_cell(icu, prefix);
  }
  return row;
}

const CodeTables::ByByte::Row& CodeTables::add_pairs(unsigned first) const {
  return pairs_.add(first, ask_utf8(std::string(1, static_cast<char>(first))));
}

const CodeTables::ByUnit::Row& CodeTables::add_units(unsigned upper) const {
  IcuConverter icu(name_, exchanges_controls_);
  ByUnit::Row row;
  for (unsigned lower = 0; lower < row_size; ++lower)
    row[lower] = ask_bytes(icu, static_cast<char16_t>(upper * row_size + lower));
  return units_.add(upper, row);
}

}  // namespace ku::i18n::detail
