#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// Makes `out` the text of `in`, re-encoded. The empty encoding name is the local code page.
///
/// Each of the two stages, into UTF-16 and out of it, is strict up to the first character that it cannot convert.
/// From there on it is tolerant, and a line on standard output says so. Whatever else keeps a strict stage from
/// its work is raised as `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER`; what stops a tolerant one is
/// raised as it is. After either, `out` is as it was.
void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to);

}  // namespace Korvane::qardatainterfaces
