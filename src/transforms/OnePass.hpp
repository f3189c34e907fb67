#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARConversionLoss.hpp>

#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

/// Which of the two stages wrote a substitute.
struct LossyStages {
  bool inInput;
  bool inOutput;
};

/// Converts `in` to `out` with the platform's transcoder. Returns nothing and leaves `out` unchanged if the platform
/// has no transcoder or the conversion fails for any reason. The caller then runs the two stages one after the other,
/// which raise the error of the contract.
std::optional<LossyStages> transcodeInOnePass(const QARByteArray& in, QARByteArray& out, const std::string& from,
                                              const std::string& to) noexcept;

/// What the same conversion loses, and where; empty if the platform has no transcoder. May throw `std::bad_alloc`.
QARConversionLoss locateLosses(const QARByteArray& in, const std::string& from, const std::string& to);

}  // namespace Korvane::qardatainterfaces
