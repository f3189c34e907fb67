#include "CodeTables.hpp"

#include "ascii.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace ku::i18n::detail {
namespace {

// A cell must not stay empty only because memory had run out.
bool is_success(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  return U_SUCCESS(status);
}

// The unit that a character of these bytes is, if it does not depend on what follows; else `otherwise`.
char16_t unit_of(IcuConverter& icu, const std::string& bytes, char16_t otherwise) {
  std::array<char16_t, 8> units{};
  DecodingCursor c{bytes.data(), bytes.data() + bytes.size(), units.data(), units.data() + units.size()};
  return is_success(icu.try_decode(c, false)) && c.to == &units[1] && !icu.is_decoding_pending() ? units[0]
                                                                                                 : otherwise;
}

// The bytes of a unit that does not depend on its neighbours, their number in the highest byte; else 0.
std::uint32_t bytes_of(IcuConverter& icu, char16_t unit) {
  std::array<char, 16> bytes{};
  EncodingCursor c{&unit, &unit + 1, bytes.data(), bytes.data() + bytes.size()};
  if (!is_success(icu.try_encode(c, false)) || icu.is_encoding_pending()) return 0;
  const auto length = static_cast<std::size_t>(c.to - bytes.data());
  if (length == 0 || length > 3) return 0;
  std::uint32_t cell = 0;
  std::memcpy(&cell, bytes.data(), length);
  return cell | static_cast<std::uint32_t>(length) << 24;
}

}  // namespace

CodeTables::CodeTables(const std::string& name, bool exchanges_controls)
    : name_(name), exchanges_controls_(exchanges_controls), single_(ask_decoding({})) {
  is_single_ = std::find(single_.begin(), single_.end(), not_here) == single_.end();
  const auto& ascii = encoding_row(0);
  has_ascii_ = true;
  for (unsigned byte = 0; byte < 0x80; ++byte)
    has_ascii_ = has_ascii_ && single_[byte] == byte && ascii[byte] == (1U << 24 | byte);
}

CodeTables::DecodingRow CodeTables::ask_decoding(std::string prefix) const {
  IcuConverter icu(name_, exchanges_controls_);
  DecodingRow row;
  prefix.push_back('\0');
  for (unsigned byte = 0; byte < row.size(); ++byte) {
    prefix.back() = static_cast<char>(byte);
    row[byte] = unit_of(icu, prefix, not_here);
  }
  return row;
}

CodeTables::EncodingRow CodeTables::ask_encoding(unsigned high) const {
  IcuConverter icu(name_, exchanges_controls_);
  EncodingRow row;
  for (unsigned low = 0; low < row.size(); ++low) row[low] = bytes_of(icu, static_cast<char16_t>(high << 8 | low));
  return row;
}

const CodeTables::DecodingRow& CodeTables::decoding_row(unsigned lead) const {
  return pairs_.row(lead, [&] { return ask_decoding(std::string(1, static_cast<char>(lead))); });
}

const CodeTables::EncodingRow& CodeTables::encoding_row(unsigned high) const {
  return units_.row(high, [&] { return ask_encoding(high); });
}

void CodeTables::decode(DecodingCursor& c) const {
  while (c.both() > 0) {
    if (has_ascii_) c.advance(widen_ascii(c.from, c.both(), c.to));
    if (is_single_) {
      const std::size_t count = std::min<std::size_t>(16, c.both());
      for (std::size_t at = 0; at < count; ++at) c.to[at] = single_[static_cast<unsigned char>(c.from[at])];
      c.advance(count);
      continue;
    }
    for (int tries = 16; tries > 0 && c.both() > 0; --tries) {
      const char16_t unit = single_[static_cast<unsigned char>(*c.from)];
      if (unit != not_here) {
        *c.to = unit;
        c.advance(1);
      } else if (!decode_pair(c)) {
        return;
      }
    }
  }
}

bool CodeTables::decode_pair(DecodingCursor& c) const {
  if (c.left() < 2) return false;
  const char16_t unit = decoding_row(static_cast<unsigned char>(c.from[0]))[static_cast<unsigned char>(c.from[1])];
  if (unit == not_here) return false;
  *c.to++ = unit;
  c.from += 2;
  return true;
}

void CodeTables::encode(EncodingCursor& c) const {
  while (c.both() > 0) {
    if (has_ascii_) c.advance(narrow_ascii(c.from, c.both(), c.to));
    for (int tries = 16; tries > 0 && c.both() > 0; --tries) {
      const std::uint32_t cell = encoding_row(*c.from >> 8)[*c.from & 0xFF];
      const std::size_t length = cell >> 24;
      if (length == 0 || length > c.room()) return;
      std::memcpy(c.to, &cell, c.room() < 4 ? length : 4);  // what is too much is overwritten by what follows
      c.to += length;
      ++c.from;
    }
  }
}

}  // namespace ku::i18n::detail
