#pragma once

#include <qardatainterfaces/QARConversionLoss.hpp>
#include <qardatainterfaces/QARTransform.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// Converts content from one named encoding to another, and reports what the conversion loses.
///
/// Prints nothing. Derive from it and override `lost` to receive the losses.
///
/// Encodings  The names are those of `ku::i18n::codecvt_string_to_ustring`. The empty name is the local code page,
///            the encoding of `ku::i18n::ZrLocale::global()` when `transform` is called. A byte-order mark is
///            converted like any other character.
/// Loss       A malformed sequence of the input, or a character that the target encoding lacks. A malformed sequence
///            counts once, even if the target encoding lacks U+FFFD as well.
/// Threads    Any number of threads may call one transform at the same time, if its `lost` allows that.
class [[gnu::visibility("default")]] QARCodePageTransform : public QARTransform {
public:
  /// What `transform` does about loss.
  enum class OnLoss {
    substitute,  ///< writes U+FFFD or the substitute of the target instead, as the local code-page transforms do
    fail         ///< returns false, which makes the read fail
  };

  /// Converts from the encoding named `from` to the one named `to`. Copies the text at `id`, the identifier of the
  /// transform. Empty input is allowed, empty output is not.
  /// Throws `ku::i18n::CvtExceptionBase` with a text that names the encoding if one of the two is refused,
  /// `std::logic_error` if `id` is null, and `std::bad_alloc`.
  QARCodePageTransform(const char* id, const std::string& from, const std::string& to,
                       OnLoss onLoss = OnLoss::substitute);
  ~QARCodePageTransform() override;

  /// Does nothing and returns true.
  bool cleanup() override;

  /// Writes the converted text of `in` to `out` and returns true. Calls `lost` first if anything was lost; with
  /// `OnLoss::fail` it then returns false and leaves `out` unchanged. `in` and `out` may be the same object.
  ///
  /// Throws what `lost` throws, `std::bad_alloc`, and `Korvane::rtxi18nutil::DeployedException` with
  /// `QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER` if the local code page is unknown, or if memory runs
  /// out before anything was lost. `out` is then unchanged.
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override;

protected:
  /// Called once by each call of `transform` that loses anything, before it returns. `loss` covers the whole content;
  /// `meta` is the argument of `transform`. Does nothing by default.
  virtual void lost(const QARConversionLoss& loss, QARMetaData& meta);

private:
  const std::string from_;
  const std::string to_;
  const OnLoss onLoss_;
};

}  // namespace Korvane::qardatainterfaces
