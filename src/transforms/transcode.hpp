#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <functional>
#include <string>

namespace Korvane::qardatainterfaces {

/// The two stages of a conversion: into UTF-16, and out of it.
enum class Stage { decoding, encoding };

/// Makes `out` the text of `in`, re-encoded. The empty encoding name is the local code page.
///
/// Each stage is strict up to the first character that it cannot convert. From there on it is tolerant, which `tell`
/// is told. Whatever else keeps a strict stage from its work is raised as
/// `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER`; what stops a tolerant one is raised as it is. After
/// either, `out` is as it was.
void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to,
               const std::function<void(Stage)>& tell);

/// Says on standard output that a stage is tolerant.
void announce(Stage);

}  // namespace Korvane::qardatainterfaces
