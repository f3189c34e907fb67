#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <optional>
#include <string>

namespace Korvane::qardatainterfaces {

/// Which of the two stages has put a substitute in place of anything.
struct LossyStages {
  bool inInput;
  bool inOutput;
};

/// Makes `out` the text of `in`, re-encoded, with the platform's transcoder. Nothing, and `out` as it was, if
/// anything keeps that from being done: then the two stages, one after the other, show what it is.
std::optional<LossyStages> transcodeInOnePass(const QARByteArray& in, QARByteArray& out, const std::string& from,
                                              const std::string& to) noexcept;

}  // namespace Korvane::qardatainterfaces
