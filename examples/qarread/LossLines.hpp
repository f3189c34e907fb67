#pragma once

#include "Presentation.hpp"

namespace qarread {

/// --check: a line for each of a path's first losses, and one that tells whether it would come back.
class LossLines final : public Presentation {
public:
  explicit LossLines(Output& output) : output_(output) {}

  void show(const Found& found, const Record& record) override;

private:
  Output& output_;
};

}  // namespace qarread
