#pragma once

#include "../walk.hpp"
#include "Options.hpp"
#include "Record.hpp"

#include <cstddef>
#include <memory>

namespace qarread {

class Output;

/// The output of one mode of the program. Throws what `Output` throws.
class Presentation {
public:
  virtual ~Presentation() = default;

  virtual void begin() {}
  /// Whether the content of the paths has to be read.
  virtual bool wantsContent() const { return true; }
  /// The next piece of a path's content.
  virtual void take(const void* /*bytes*/, std::size_t /*size*/) {}
  /// Called once for each path at its end, whether it succeeded or failed.
  virtual void show(const Found& /*found*/, const Record& /*record*/) {}
  virtual void end() {}
};

/// The presentation for the mode in `options`. `transformWidth` is the length of the longest name of a transform.
std::unique_ptr<Presentation> makePresentation(const Options& options, std::size_t transformWidth, Output& output);

}  // namespace qarread
