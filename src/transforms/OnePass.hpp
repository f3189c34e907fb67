#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARConversionLoss.hpp>

#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

/// Which of the two stages has put a substitute in place of anything.
struct LossyStages {
  bool inInput;
  bool inOutput;
};

/// Makes `out` the text of `in`, re-encoded, with the platform's transcoder. Nothing, and `out` as it was, if
/// anything keeps that from being done, as where the platform has none: then the two stages, one after the other,
/// show what it is.
std::optional<LossyStages> transcodeInOnePass(const QARByteArray& in, QARByteArray& out, const std::string& from,
                                              const std::string& to) noexcept;

/// What the same conversion loses, and where. Nothing where the platform has no transcoder. May throw
/// `std::bad_alloc`.
QARConversionLoss locateLosses(const QARByteArray& in, const std::string& from, const std::string& to);

}  // namespace Korvane::qardatainterfaces
