#pragma once

#include "Position.hpp"

#include <qardatainterfaces/QARCodePageTransform.hpp>

#include <optional>
#include <string>
#include <vector>

namespace qarread {

/// One loss and where it is in the text.
struct LossAt {
  Korvane::qardatainterfaces::QARConversionLoss::Place place;
  Position position;
  std::string bytes;  // of the input
};

/// What the conversion of one file does to it.
struct Findings {
  std::string from, to;      // the encodings, by name
  bool isReversible = true;  // converting back restores the input byte for byte
  std::uint64_t malformed = 0, unmappable = 0;
  std::vector<LossAt> first;  // the first losses

  std::uint64_t losses() const noexcept { return malformed + unmappable; }
};

/// Converts between two encodings and back, and compares.
class Checking final : public Korvane::qardatainterfaces::QARCodePageTransform {
public:
  /// The empty encoding is the local code page, which must not change after this. Each conversion stores its result
  /// in `findings`.
  Checking(const char* id, const std::string& from, const std::string& to, std::optional<Findings>& findings);

  bool transform(const Korvane::qardatainterfaces::QARByteArray& in, Korvane::qardatainterfaces::QARByteArray& out,
                 Korvane::qardatainterfaces::QARMetaData& meta) override;

protected:
  void lost(const Korvane::qardatainterfaces::QARConversionLoss& loss,
            Korvane::qardatainterfaces::QARMetaData& meta) override;

private:
  const std::string from_, to_;
  Korvane::qardatainterfaces::QARCodePageTransform back_;
  Korvane::qardatainterfaces::QARConversionLoss loss_;  // of the current conversion
  std::optional<Findings>& findings_;
};

}  // namespace qarread
