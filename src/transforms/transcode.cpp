#include "transcode.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#if __has_include(<ku/i18n/Transcoder.hpp>)
#include "OnePass.hpp"
#endif

#include <iostream>

namespace Korvane::qardatainterfaces {
namespace {

void report() { std::cout << "Invalid character was detected." << std::endl; }

/// Converts a whole text by `Converter`, strictly; if that meets an invalid character, says so and converts
/// tolerantly.
template <class Converter, class Text>
auto convert(const std::string& encoding, const Text* text, std::size_t count) {
  try {
    return Converter(encoding, false).convert(text, count);
  } catch (const ku::i18n::CvtInvalidCharacter&) {
    report();
  } catch (...) {
    throw rtxi18nutil::DeployedException(
        qar::qardatainterfaces::QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER());
  }
  return Converter(encoding, true).convert(text, count);
}

void transcodeInTwoStages(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to) {
  using namespace ku::i18n;
  const auto* const bytes = reinterpret_cast<const char*>(in.begin());
  const auto units = convert<codecvt_string_to_ustring>(from, bytes, in.size());
  out = QARByteArray(convert<codecvt_ustring_to_string>(to, units.data(), units.size()));
}

}  // namespace

void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to) {
#if __has_include(<ku/i18n/Transcoder.hpp>)
  if (const auto loss = transcodeInOnePass(in, out, from, to)) {
    if (loss->inInput) report();
    if (loss->inOutput) report();
    return;
  }
#endif
  transcodeInTwoStages(in, out, from, to);
}

}  // namespace Korvane::qardatainterfaces
