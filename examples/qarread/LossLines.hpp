#pragma once

#include "Presentation.hpp"

namespace qarread {

/// --check: one line for each of a path's first losses, and one that says whether the file would come back.
class LossLines final : public Presentation {
public:
  explicit LossLines(Output& output) : output_(output) {}

  void show(const Found& found, const Record& record) override;

private:
  Output& output_;
};

}  // namespace qarread
