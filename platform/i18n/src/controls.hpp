#pragma once

#include <cstddef>

namespace ku::i18n::detail {

/// ICU counts in 32 bits: what goes to it at a time.
constexpr std::size_t icu_slice = std::size_t{1} << 30;

/// ICU's PC code pages exchange three controls as the hardware of their day did; text in files never meant that.
constexpr char16_t control_from_icu(char16_t unit) {
  switch (unit) {
    case 0x1C: return 0x1A;
    case 0x7F: return 0x1C;
    case 0x1A: return 0x7F;
    default: return unit;
  }
}

constexpr char16_t control_to_icu(char16_t unit) {
  switch (unit) {
    case 0x1A: return 0x1C;
    case 0x1C: return 0x7F;
    case 0x7F: return 0x1A;
    default: return unit;
  }
}

}  // namespace ku::i18n::detail
