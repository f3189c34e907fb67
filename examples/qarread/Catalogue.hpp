#pragma once

#include "Presentation.hpp"

#include <qardatainterfaces/QARData.hpp>

namespace qarread {

/// --catalogue: the paths as entries of an archive catalogue.
class Catalogue final : public Presentation {
public:
  explicit Catalogue(Output& output) : output_(output) {}

  bool wantsContent() const override { return false; }
  void show(const Found& found, const Record& record) override;
  void end() override;

private:
  Output& output_;
  Korvane::qardatainterfaces::QARData catalogue_;
};

}  // namespace qarread
