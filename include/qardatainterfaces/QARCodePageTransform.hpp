#pragma once

#include <qardatainterfaces/QARConversionLoss.hpp>
#include <qardatainterfaces/QARTransform.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// Re-encodes content from one named encoding in another, and tells what that loses.
///
/// Prints nothing. Derive from it and override `lost` to learn of losses.
///
/// Encodings  Named as `ku::i18n::codecvt_string_to_ustring` tells. The empty name is the local code page: the
///            encoding of `ku::i18n::ZrLocale::global()` when `transform` is called. Byte-order marks are text
///            like any other.
/// Loss       A malformed sequence of the input, or a character that the target encoding lacks. A malformed sequence
///            counts once, also if the target lacks the U+FFFD that would stand for it.
/// Threads    Any number of threads may call one transform at the same moment, if its `lost` allows that.
class [[gnu::visibility("default")]] QARCodePageTransform : public QARTransform {
public:
  /// What `transform` does about loss.
  enum class OnLoss {
    substitute,  ///< puts U+FFFD in its place, or what the target has instead: the bytes of the local transforms
    fail         ///< returns false, which makes the read fail
  };

  /// Converts from the encoding named `from` to that named `to`. Copies the text at `id`, by which readers name the
  /// transform. Empty input is allowed, empty output is not.
  /// Throws `ku::i18n::CvtExceptionBase`, which names the encoding, if one of the two is refused, `std::logic_error`
  /// if `id` is null, and `std::bad_alloc`.
  QARCodePageTransform(const char* id, const std::string& from, const std::string& to,
                       OnLoss onLoss = OnLoss::substitute);
  ~QARCodePageTransform() override;

  /// Does nothing and returns true.
  bool cleanup() override;

  /// Makes `out` the text of `in`, re-encoded. Calls `lost` if that loses anything, and then, with `OnLoss::fail`,
  /// returns false and leaves `out` as it was; returns true otherwise. `in` and `out` may be the same.
  ///
  /// Throws what `lost` throws, `std::bad_alloc`, and `Korvane::rtxi18nutil::DeployedException` with
  /// `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER` if the local code page is unknown, or if memory runs
  /// out before anything was lost. `out` is then as it was.
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override;

protected:
  /// Called once by each `transform` that meets loss, before it returns, with the losses of the whole content and the
  /// metadata that it was given. Does nothing by default.
  virtual void lost(const QARConversionLoss& loss, QARMetaData& meta);

private:
  const std::string from_;
  const std::string to_;
  const OnLoss onLoss_;
};

}  // namespace Korvane::qardatainterfaces
