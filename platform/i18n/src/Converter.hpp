#pragma once

#include "Encoding.hpp"
#include "Pace.hpp"

#include <ku/i18n/codecvt.hpp>

#include <memory>

namespace ku::i18n::detail {

/// The two directions of a conversion, and the two ways that each has: our own, for characters that we know by
/// themselves, and ICU's.
struct ToUnicode {
  using Cursor = DecodingCursor;
  static void convert_known(const Encoding& encoding, Cursor& cursor);
  static bool convert(IcuConverter& icu, Cursor& c, std::size_t count, bool last) {
    return icu.decode(c, count, last);
  }
  static bool is_pending(const IcuConverter& icu) { return icu.is_decoding_pending(); }
};
struct FromUnicode {
  using Cursor = EncodingCursor;
  static void convert_known(const Encoding& encoding, Cursor& cursor);
  static bool convert(IcuConverter& icu, Cursor& c, std::size_t count, bool last) {
    return icu.encode(c, count, last);
  }
  static bool is_pending(const IcuConverter& icu) { return icu.is_encoding_pending(); }
};

/// Converts in one direction, piece by piece.
template <class Direction>
class Converter {
public:
  using Cursor = typename Direction::Cursor;

  Converter(const Encoding& encoding, bool tolerant);

  void reset() noexcept;
  /// Returns whether all input is taken and all of its output is placed.
  bool convert(Cursor& cursor, bool last);
  bool has_substituted() const noexcept { return icu_ && icu_->has_substituted(); }

  const Encoding& encoding() const noexcept { return encoding_; }
  /// Whether what comes next begins a character.
  bool is_between_characters() const noexcept { return !needs_icu_; }

private:
  bool convert_by_icu(Cursor& cursor, bool last);

  const Encoding& encoding_;
  bool tolerant_;
  bool needs_icu_;  // it has begun a character, or no other way is known
  std::unique_ptr<IcuConverter> icu_;
  Pace pace_;
};

}  // namespace ku::i18n::detail
