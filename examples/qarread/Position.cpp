#include "Position.hpp"

// A platform without the transcoder reports no places of losses.
#if __has_include(<ku/i18n/Transcoder.hpp>)

#include <ku/i18n/Transcoder.hpp>

#include <array>
#include <string_view>

namespace qarread {
namespace {

using ku::i18n::Transcoder;

void advance(Position& position, std::string_view utf8) {
  for (const char byte : utf8) {
    if (byte == '\n')
      position = {position.line + 1, 1};
    else if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80)  // the first byte of a code point
      ++position.column;
  }
}

/// Moves `position` over what the next piece of the text decodes to. Returns how much of the piece was consumed.
std::size_t advance(Position& position, Transcoder& toUtf8, std::string_view piece, bool last) {
  std::array<char, 4096> utf8;
  std::size_t consumed = 0;
  for (bool done = false; !done;) {
    const auto step =
        toUtf8.convert(piece.data() + consumed, piece.size() - consumed, last, utf8.data(), utf8.size());
    advance(position, {utf8.data(), step.written});
    consumed += step.consumed;
    done = step.done;
  }
  return consumed;
}

}  // namespace

std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>& places,
                                  const Korvane::qardatainterfaces::QARByteArray& text, const std::string& encoding) {
  std::vector<Position> positions;
  Transcoder toUtf8(encoding, "UTF-8");
  const std::string_view bytes(reinterpret_cast<const char*>(text.begin()), text.size());
  Position position;
  std::size_t consumed = 0;
  for (const auto& place : places) {
    consumed += advance(position, toUtf8, bytes.substr(consumed, place.offset - consumed), false);
    positions.push_back(position);
    if (consumed < place.offset) {  // a character that the next bytes might have been a part of
      Transcoder alone(encoding, "UTF-8");
      advance(positions.back(), alone, bytes.substr(consumed, place.offset - consumed), true);
    }
  }
  return positions;
}

}  // namespace qarread

#else

namespace qarread {

std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>&,
                                  const Korvane::qardatainterfaces::QARByteArray&, const std::string&) {
  return {};
}

}  // namespace qarread

#endif
