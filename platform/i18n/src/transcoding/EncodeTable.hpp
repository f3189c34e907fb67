#pragma once

#include "converters/Encoding.hpp"
#include "transcoding/kernels/tables.hpp"

#include <memory>
#include <mutex>

namespace ku::i18n::detail {

/// The bytes of a code page's characters. ICU is asked once for each character, when a text first has it.
///
/// Threads  Any number of threads may use it.
class EncodeTable {
public:
  explicit EncodeTable(const Encoding& encoding);
  ~EncodeTable();
  EncodeTable(const EncodeTable&) = delete;
  EncodeTable& operator=(const EncodeTable&) = delete;

  const EncodeRows& rows() const noexcept { return rows_; }

  /// The entry of a character, or of a surrogate, which no code page has; never 0.
  Entry find(char32_t code) const {
    const Entry entry = rows_.entry(code);
    return entry != 0 ? entry : look_up(code);
  }

private:
  Entry look_up(char32_t code) const;
  Entry ask_icu(char32_t code) const;
  Entry add_long_code(std::uint64_t bytes) const;
  EncodeRows::Row& make_row(unsigned index) const;
  EncodeRows::Bytes& bytes() const;

  const Encoding& encoding_;
  mutable EncodeRows rows_;
  mutable std::mutex mutex_;  // for adding to the rows and for the members below
  mutable std::unique_ptr<IcuConverter> icu_;
  mutable std::uint32_t long_codes_ = 0;
};

}  // namespace ku::i18n::detail
