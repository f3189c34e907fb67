#include "transcoding/EncodeTable.hpp"

#include <unicode/utf16.h>

#include <array>
#include <cstring>

namespace ku::i18n::detail {

EncodeTable::EncodeTable(const Encoding& encoding) : encoding_(encoding) {}

EncodeTable::~EncodeTable() {
  for (auto& row : rows_.all)
    if (const auto* const made = row.load(std::memory_order_relaxed); made != &EncodeRows::none) delete made;
  for (auto& codes : rows_.long_codes) delete codes.load(std::memory_order_relaxed);
  delete rows_.bytes.load(std::memory_order_relaxed);
}

Entry EncodeTable::look_up(char32_t code) const {
  const std::lock_guard lock(mutex_);
  // Another thread may have added it since the caller looked.
  if (const Entry known = rows_.entry(code); known != 0) return known;
  auto& row = make_row(code / EncodeRows::row_size);
  const Entry entry = ask_icu(code);
  if (encoding_.is_single_byte() && entry > 0 && length_of(entry) == 1 && code < 0x10000)
    bytes()[code].store(static_cast<std::uint8_t>(entry), std::memory_order_relaxed);
  row[code % EncodeRows::row_size].store(entry, std::memory_order_release);
  return entry;
}

Entry EncodeTable::ask_icu(char32_t code) const {
  if (U_IS_SURROGATE(code)) return special_entry(Kind::unmappable);
  if (!icu_) icu_ = encoding_.make_converter(false);
  std::array<char16_t, 2> units{static_cast<char16_t>(code)};
  if (code > 0xFFFF) units = {U16_LEAD(code), U16_TRAIL(code)};
  std::array<char, 16> bytes{};
  EncodingCursor c{units.data(), units.data() + (code > 0xFFFF ? 2 : 1), bytes.data(), bytes.data() + bytes.size()};
  const UErrorCode status = icu_->try_encode(c, false);
  const auto length = static_cast<std::size_t>(c.to - bytes.data());
  if (U_FAILURE(status)) {
    if (status == U_MEMORY_ALLOCATION_ERROR) check(status);
    return special_entry(status == U_BUFFER_OVERFLOW_ERROR ? Kind::dependent : Kind::unmappable);
  }
  if (length == 0 || length > 7 || icu_->encoding_pending() != 0) return special_entry(Kind::dependent);
  std::uint64_t all = 0;
  std::memcpy(&all, bytes.data(), length);
  if (length <= 3) return static_cast<Entry>(all | length << 24);
  return add_long_code(all | std::uint64_t{length} << 56);
}

Entry EncodeTable::add_long_code(std::uint64_t bytes) const {
  constexpr auto size = EncodeRows::long_codes_size;
  auto& codes = rows_.long_codes[long_codes_ / size];
  if (codes.load(std::memory_order_relaxed) == nullptr)
    codes.store(new EncodeRows::LongCodes{}, std::memory_order_release);
  (*codes.load(std::memory_order_relaxed))[long_codes_ % size] = bytes;
  return special_entry(Kind::long_code, long_codes_++);
}

EncodeRows::Row& EncodeTable::make_row(unsigned index) const {
  auto& place = rows_.all[index];
  if (place.load(std::memory_order_relaxed) == &EncodeRows::none)
    place.store(new EncodeRows::Row{}, std::memory_order_release);
  return const_cast<EncodeRows::Row&>(*place.load(std::memory_order_relaxed));
}

EncodeRows::Bytes& EncodeTable::bytes() const {
  if (rows_.bytes.load(std::memory_order_relaxed) == nullptr)
    rows_.bytes.store(new EncodeRows::Bytes{}, std::memory_order_release);
  return const_cast<EncodeRows::Bytes&>(*rows_.bytes.load(std::memory_order_relaxed));
}

}  // namespace ku::i18n::detail
