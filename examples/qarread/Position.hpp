#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARConversionLoss.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace qarread {

/// A place in a text, counted as editors do: a line ends with U+000A, a column is a code point or a malformed
/// sequence.
struct Position {
  std::uint64_t line = 1;
  std::uint64_t column = 1;
};

/// The positions of `places` in `text`, which has the encoding `encoding`.
std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>& places,
                                  const Korvane::qardatainterfaces::QARByteArray& text, const std::string& encoding);

}  // namespace qarread
