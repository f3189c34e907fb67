#include "Position.hpp"

#include <ku/i18n/codecvt.hpp>

#include <algorithm>

namespace qarread {
namespace {

Position endOf(const std::u16string& text) {
  const auto lineEnd = text.rfind(u'\n');
  const auto lineStart = text.begin() + static_cast<std::ptrdiff_t>(lineEnd == text.npos ? 0 : lineEnd + 1);
  Position position;
  position.line += static_cast<std::uint64_t>(std::count(text.begin(), lineStart, u'\n'));
  char16_t before = 0;
  for (auto unit = lineStart; unit != text.end(); ++unit) {
    const bool completesPair = (before & 0xFC00) == 0xD800 && (*unit & 0xFC00) == 0xDC00;
    if (!completesPair) ++position.column;
    before = *unit;
  }
  return position;
}

}  // namespace

std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>& places,
                                  const Korvane::qardatainterfaces::QARByteArray& text, const std::string& encoding) {
  std::vector<Position> positions;
  ku::i18n::codecvt_string_to_ustring decoder(encoding, true);
  const auto* const bytes = reinterpret_cast<const char*>(text.begin());
  // A stateful encoding can only be decoded from the start.
  for (const auto& place : places) positions.push_back(endOf(decoder.convert(bytes, place.offset)));
  return positions;
}

}  // namespace qarread
