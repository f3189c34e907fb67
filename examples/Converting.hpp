#pragma once

#include <qardatainterfaces/QARCodePageTransform.hpp>

#include <string>

namespace qarread {

/// Converts between two encodings, and leaves in the user data its name and what was lost.
///
/// Threads  Any number of threads may call one transform at the same moment.
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
