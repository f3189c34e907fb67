#include "transcode.hpp"

#include "OnePass.hpp"
#include "types/ByteArrayAccess.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <iostream>

namespace Korvane::qardatainterfaces {
namespace {

/// Converts a whole text by a strict `Converter`. At an invalid character, calls `tell` and converts the whole text
/// again by a tolerant one.
template <class Converter, class Text, class Tell>
auto convert(const std::string& encoding, const Text* text, std::size_t count, Tell tell) {
  try {
    return Converter(encoding, false).convert(text, count);
  } catch (const ku::i18n::CvtInvalidCharacter&) {
    tell();
  } catch (...) {
    throw rtxi18nutil::DeployedException(
        qar::qardatainterfaces::QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER());
  }
  return Converter(encoding, true).convert(text, count);
}

}  // namespace

void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to,
               const std::function<void(Stage)>& tell) {
  QARByteArray converted;  // `tell` may throw
  if (const auto lossy = transcodeInOnePass(in, converted, from, to)) {
    if (lossy->inInput) tell(Stage::decoding);
    if (lossy->inOutput) tell(Stage::encoding);
    ByteArrayAccess::swap(out, converted);
    return;
  }
  using namespace ku::i18n;
  const auto* const bytes = reinterpret_cast<const char*>(in.begin());
  const auto units = convert<codecvt_string_to_ustring>(from, bytes, in.size(), [&] { tell(Stage::decoding); });
  out = QARByteArray(
      convert<codecvt_ustring_to_string>(to, units.data(), units.size(), [&] { tell(Stage::encoding); }));
}

void announce(Stage) { std::cout << "Invalid character was detected." << std::endl; }

}  // namespace Korvane::qardatainterfaces
