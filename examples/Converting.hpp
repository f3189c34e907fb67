#pragma once

#include <qardatainterfaces/QARCodePageTransform.hpp>

#include <string>

namespace qarread {

/// Converts between two encodings, and writes its name and a report of the losses to the user data.
///
/// Threads  Any number of threads may use one transform at the same time.
class Converting final : public Korvane::qardatainterfaces::QARCodePageTransform {
public:
  using QARCodePageTransform::QARCodePageTransform;

  bool transform(const Korvane::qardatainterfaces::QARByteArray& in, Korvane::qardatainterfaces::QARByteArray& out,
                 Korvane::qardatainterfaces::QARMetaData& meta) override;

protected:
  void lost(const Korvane::qardatainterfaces::QARConversionLoss& loss,
            Korvane::qardatainterfaces::QARMetaData& meta) override;
};

}  // namespace qarread
