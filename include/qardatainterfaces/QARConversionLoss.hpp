#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Korvane::qardatainterfaces {

/// What a conversion between two encodings could not keep: how much, and where the first losses are.
///
/// Errors   Copying throws `std::bad_alloc`.
/// Threads  A plain value: distinct objects are independent.
struct [[gnu::visibility("default")]] QARConversionLoss {
  /// One loss.
  struct Place {
    std::uint64_t offset;  ///< of its first byte in the input, from 0
    std::uint32_t length;  ///< its bytes in the input
    char32_t character;    ///< what the target encoding lacks; U+FFFD for input that is no character
    bool malformed;        ///< the bytes are no character of the source encoding
  };
  /// How many places are kept.
  static constexpr std::size_t most_places = 16;

  std::uint64_t malformed = 0;   ///< how many sequences of the input were no character of the source encoding
  std::uint64_t unmappable = 0;  ///< how many characters the target encoding lacks
  std::vector<Place> places;     ///< the first losses, by offset; empty where the platform cannot tell them
};

}  // namespace Korvane::qardatainterfaces
