#pragma once

#include <qardatainterfaces/QARCodePageTransform.hpp>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace Korvane::qardatainterfaces {

/// "malformed unmappable: places". Not written to a stream, which would ignore a lack of memory.
inline std::string described(const QARConversionLoss& loss) {
  auto text = std::to_string(loss.malformed) + ' ' + std::to_string(loss.unmappable) + ':';
  for (const auto& place : loss.places) {
    char code[16] = "";
    if (!place.malformed || place.character != 0xFFFD)
      std::snprintf(code, sizeof code, "=U+%04X", static_cast<unsigned>(place.character));
    text += ' ' + std::to_string(place.offset) + '+' + std::to_string(place.length) + code;
  }
  return text;
}

/// Appends the losses to the user data, unless that is "unwanted".
class Reporting final : public QARCodePageTransform {
public:
  Reporting(const std::string& from, const std::string& to, OnLoss onLoss = OnLoss::substitute)
      : QARCodePageTransform("reporting", from, to, onLoss) {}

protected:
  void lost(const QARConversionLoss& loss, QARMetaData& meta) override {
    if (meta.getUserData() == "unwanted") throw std::runtime_error("unwanted");
    meta.setUserData(meta.getUserData() + described(loss));
  }
};

}  // namespace Korvane::qardatainterfaces
