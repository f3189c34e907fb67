#include "Checking.hpp"

#include <ku/i18n/ZrLocale.hpp>

#include <algorithm>

namespace qarread {
namespace {

namespace di = Korvane::qardatainterfaces;

std::string nameOf(const std::string& encoding) {
  return encoding.empty() ? ku::i18n::ZrLocale::global().encoding() : encoding;
}

std::vector<LossAt> locate(const di::QARConversionLoss& loss, const di::QARByteArray& in, const std::string& from) {
  std::vector<LossAt> result;
  if (loss.places.empty()) return result;
  const auto positions = positionsOf(loss.places, in, from);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const auto& place = loss.places[i];
    const auto* const bytes = in.begin() + place.offset;
    result.push_back({place, positions[i], std::string(bytes, bytes + place.length)});
  }
  return result;
}

}  // namespace

Checking::Checking(const char* id, const std::string& from, const std::string& to, std::optional<Findings>& findings)
    : QARCodePageTransform(id, from, to),
      from_(nameOf(from)),
      to_(nameOf(to)),
      back_("back", to, from),
      findings_(findings) {}

bool Checking::transform(const di::QARByteArray& in, di::QARByteArray& out, di::QARMetaData& meta) {
  loss_ = {};
  if (!QARCodePageTransform::transform(in, out, meta)) return false;
  di::QARByteArray again;
  di::QARMetaData ignored;
  const bool isReversible = out.size() > 0 && back_.transform(out, again, ignored) &&
                            std::equal(in.begin(), in.end(), again.begin(), again.end());
  findings_ = Findings{from_, to_, isReversible, loss_.malformed, loss_.unmappable, locate(loss_, in, from_)};
  return true;
}

void Checking::lost(const di::QARConversionLoss& loss, di::QARMetaData&) { loss_ = loss; }

}  // namespace qarread
