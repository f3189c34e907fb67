#include "Converter.hpp"

#include "utf8.hpp"

#include <algorithm>

namespace ku::i18n::detail {

void ToUnicode::convert_known(const Encoding& encoding, Cursor& cursor) {
  if (encoding.is_utf8())
    decode_utf8(cursor);
  else
    encoding.tables()->decode(cursor);
}

void FromUnicode::convert_known(const Encoding& encoding, Cursor& cursor) {
  if (encoding.is_utf8())
    encode_utf8(cursor);
  else
    encoding.tables()->encode(cursor);
}

template <class Direction>
Converter<Direction>::Converter(const Encoding& encoding, bool tolerant)
    : encoding_(encoding), tolerant_(tolerant), needs_icu_(!encoding.is_context_free()) {}

template <class Direction>
void Converter<Direction>::reset() noexcept {
  if (icu_) icu_->reset();
  needs_icu_ = !encoding_.is_context_free();
}

template <class Direction>
bool Converter<Direction>::convert(Cursor& c, bool last) {
  for (;;) {
    if (!needs_icu_) {
      const auto* const start = c.from;
      Direction::convert_known(encoding_, c);
      if (c.left() == 0) return true;
      pace_.adapt(static_cast<std::size_t>(c.from - start));
    }
    if (c.room() == 0) return false;
    const bool done = convert_by_icu(c, last);
    if (c.left() == 0 && (done || c.room() == 0)) return done;
  }
}

template <class Direction>
bool Converter<Direction>::convert_by_icu(Cursor& c, bool last) {
  if (!icu_) icu_ = encoding_.make_converter(tolerant_);
  const bool is_context_free = encoding_.is_context_free();
  const std::size_t run = !is_context_free ? c.left() : needs_icu_ ? 1 : pace_.run();
  const std::size_t count = std::min(run, c.left());
  const bool done = Direction::convert(*icu_, c, count, last && count == c.left());
  needs_icu_ = !is_context_free || !done || Direction::is_pending(*icu_);
  return done;
}

template class Converter<ToUnicode>;
template class Converter<FromUnicode>;

}  // namespace ku::i18n::detail
