#pragma once

#include <qardatainterfaces/QARTransform.hpp>

namespace Korvane::qardatainterfaces {

/// Re-encodes content in the local code page in UTF-8.
///
/// The local code page is the encoding of `ku::i18n::ZrLocale::global()` at the moment of the call. Where a text
/// cannot be converted, each offending character becomes U+FFFD, or "?" where the target has none, and the line
/// "Invalid character was detected." goes to standard output: once if the input is malformed, once if the target
/// lacks a character. Byte-order marks are text like any other.
///
/// Threads  Any number of threads may call one transform at the same moment.
class [[gnu::visibility("default")]] LCPToUTF8Transform : public QARTransform {
public:
  /// No identifier; empty input is allowed, empty output is not.
  LCPToUTF8Transform();
  ~LCPToUTF8Transform() override;

  /// Does nothing and returns true.
  bool cleanup() override;

  /// Returns true, or throws: `Korvane::rtxi18nutil::DeployedException` with
  /// `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER` for whatever stops it, an unknown code page or a
  /// lack of memory; what stops it after it has begun to substitute is thrown as it is. `out` is then as it was.
  /// `meta` is left alone. `in` and `out` may be the same.
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override;
};

}  // namespace Korvane::qardatainterfaces
