#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Korvane::qardatainterfaces {

/// What a conversion between two encodings lost: how much, and where the first losses are.
///
/// Errors   Copying may throw `std::bad_alloc`.
/// Threads  A plain value: distinct objects are independent.
struct [[gnu::visibility("default")]] QARConversionLoss {
  /// One loss. A byte that two characters share, as in UTF-7, belongs to the later one.
  struct Place {
    std::uint64_t offset;  ///< offset of its first byte in the input, from 0
    std::uint32_t length;  ///< number of its bytes in the input
    char32_t character;    ///< the character that the target encoding lacks; U+FFFD for malformed input
    bool malformed;        ///< whether the bytes are malformed in the source encoding
  };
  /// At most this many places are kept.
  static constexpr std::size_t most_places = 16;

  std::uint64_t malformed = 0;   ///< number of malformed sequences in the input
  std::uint64_t unmappable = 0;  ///< number of characters that the target encoding lacks
  std::vector<Place> places;     ///< the first losses, by offset; empty if the platform does not report them
};

}  // namespace Korvane::qardatainterfaces
