#pragma once

#include <qardatainterfaces/QARTransform.hpp>

namespace Korvane::qardatainterfaces {

/// Converts content from the local code page to UTF-8.
///
/// The local code page is the encoding of `ku::i18n::ZrLocale::global()` at the time of the call. Each character that
/// cannot be converted becomes U+FFFD, or "?" if the target encoding lacks U+FFFD. The line "Invalid character was
/// detected." is then printed to standard output: once if the input is malformed, and once if the target encoding
/// lacks a character. A byte-order mark is converted like any other character.
///
/// Threads  Any number of threads may call one transform at the same time.
class [[gnu::visibility("default")]] LCPToUTF8Transform : public QARTransform {
public:
  /// No identifier; empty input is allowed, empty output is not.
  LCPToUTF8Transform();
  ~LCPToUTF8Transform() override;

  /// Does nothing and returns true.
  bool cleanup() override;

  /// Returns true, or throws and leaves `out` unchanged. Does not use `meta`. `in` and `out` may be the same object.
  ///
  /// Throws `Korvane::rtxi18nutil::DeployedException` with
  /// `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER` if the conversion cannot be done, for example because
  /// the code page is unknown or memory runs out. A failure after the first substitution is thrown unchanged, for
  /// example as `std::bad_alloc`.
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override;
};

}  // namespace Korvane::qardatainterfaces
