#include <qardatainterfaces/QARCodePageTransform.hpp>

#include "OnePass.hpp"
#include "transcode.hpp"
#include "types/ByteArrayAccess.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>

namespace Korvane::qardatainterfaces {
namespace {

// Returns `encoding`. Raises the converter's exception if the converter refuses it.
template <class Converter>
const std::string& accepted(const std::string& encoding) {
  if (!encoding.empty()) Converter(encoding, false);
  return encoding;
}

std::string resolved(const std::string& encoding) {
  return encoding.empty() ? ku::i18n::ZrLocale::global().encoding() : encoding;
}

}  // namespace

QARCodePageTransform::QARCodePageTransform(const char* id, const std::string& from, const std::string& to,
                                           OnLoss onLoss)
    : QARTransform(id, true, false),
      from_(accepted<ku::i18n::codecvt_string_to_ustring>(from)),
      to_(accepted<ku::i18n::codecvt_ustring_to_string>(to)),
      onLoss_(onLoss) {}
QARCodePageTransform::~QARCodePageTransform() = default;

bool QARCodePageTransform::cleanup() { return true; }

bool QARCodePageTransform::transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) {
  // Resolved once for both passes, since another thread may change the locale between them.
  const std::string from = resolved(from_), to = resolved(to_);
  QARByteArray converted;
  QARConversionLoss loss;
  transcode(in, converted, from, to, [&loss](Stage stage) {
    if (stage == Stage::decoding) loss.malformed = 1;
    if (stage == Stage::encoding) loss.unmappable = 1;
  });
  if (loss.malformed + loss.unmappable > 0) {
    // A second pass, only in this case: locating losses is slower.
    if (auto located = locateLosses(in, from, to); located.malformed + located.unmappable > 0)
      loss = std::move(located);
    lost(loss, meta);
    if (onLoss_ == OnLoss::fail) return false;
  }
  ByteArrayAccess::swap(out, converted);
  return true;
}

void QARCodePageTransform::lost(const QARConversionLoss&, QARMetaData&) {}

}  // namespace Korvane::qardatainterfaces
