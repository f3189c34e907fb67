#pragma once

#include "../walk.hpp"
#include "Options.hpp"
#include "Record.hpp"

#include <cstddef>
#include <memory>

namespace qarread {

class Output;

/// What a mode of the program shows. It throws what `Output` throws.
class Presentation {
public:
  virtual ~Presentation() = default;

  virtual void begin() {}
  /// Whether the paths are to be read.
  virtual bool wantsContent() const { return true; }
  /// The next piece of a path's content.
  virtual void take(const void* /*bytes*/, std::size_t /*size*/) {}
  /// A path is done, whatever came of it.
  virtual void show(const Found& /*found*/, const Record& /*record*/) {}
  virtual void end() {}
};

/// That of the mode which `options` tells. `transformWidth` is the length of the longest name of a transform.
std::unique_ptr<Presentation> makePresentation(const Options& options, std::size_t transformWidth, Output& output);

}  // namespace qarread
