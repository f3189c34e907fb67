#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <functional>
#include <string>

namespace Korvane::qardatainterfaces {

/// The two stages of a conversion: to UTF-16, and from it.
enum class Stage { decoding, encoding };

/// Converts the text of `in` to `out`. The empty encoding name is the local code page.
///
/// Each stage is first strict. If it finds a character that it cannot convert, it calls `tell` and becomes tolerant.
/// Any other failure of a strict stage is raised as `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER`; a
/// failure of a tolerant stage is raised unchanged. `out` is unchanged after an exception.
void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to,
               const std::function<void(Stage)>& tell);

/// Prints to standard output that a stage has become tolerant.
void announce(Stage);

}  // namespace Korvane::qardatainterfaces
