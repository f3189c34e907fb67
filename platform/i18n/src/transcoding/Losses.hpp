#pragma once

#include "transcoding/Character.hpp"

#include <ku/i18n/Transcoder.hpp>

#include <functional>
#include <utility>

namespace ku::i18n::detail {

/// Records whether a conversion lost anything, and reports each loss to a listener, if there is one.
class Losses {
public:
  void report_to(std::function<void(const ConversionLoss&)> tell) { tell_ = std::move(tell); }
  bool are_located() const noexcept { return static_cast<bool>(tell_); }
  bool in_input() const noexcept { return input_; }
  bool in_output() const noexcept { return output_; }

  void note_malformed(const Character& character) {
    input_ = true;
    if (tell_) tell_({character.offset, character.length, U'\xFFFD', true});
  }
  /// Does not report a U+FFFD that stands for malformed input, since that is already reported.
  void note_unmappable(const Character& character) {
    output_ = true;
    if (tell_ && !character.malformed) tell_({character.offset, character.length, character.code, false});
  }

private:
  std::function<void(const ConversionLoss&)> tell_;
  bool input_ = false;
  bool output_ = false;
};

}  // namespace ku::i18n::detail
