#pragma once

#include "content.hpp"

#include <qardatainterfaces/QARTransform.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Korvane::qardatainterfaces {

/// A transform that runs a function of the test and records its inputs.
class ScriptedTransform final : public QARTransform {
public:
  using Script = std::function<bool(const QARByteArray& in, QARByteArray& out, QARMetaData& meta)>;

  explicit ScriptedTransform(Script next, bool empty_input = true, bool empty_output = false,
                             const char* id = "scripted")
      : QARTransform(id, empty_input, empty_output), script(std::move(next)) {}

  void set_up() { isSetup_ = true; }
  bool cleanup() override { return true; }
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override {
    inputs.push_back(text(in));
    return script(in, out, meta);
  }

  static bool copy(const QARByteArray& in, QARByteArray& out, QARMetaData&) {
    out = in;
    return true;
  }

  Script script;
  std::vector<std::string> inputs;
};

}  // namespace Korvane::qardatainterfaces
