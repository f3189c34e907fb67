#include "Presentation.hpp"

#include "../Output.hpp"
#include "Catalogue.hpp"
#include "LossLines.hpp"
#include "Table.hpp"
#include "jsonRecord.hpp"

namespace qarread {
namespace {

class Content final : public Presentation {
public:
  explicit Content(Output& output) : output_(output) {}

  void take(const void* bytes, std::size_t size) override { output_.write(bytes, size); }

private:
  Output& output_;
};

class JsonLines final : public Presentation {
public:
  JsonLines(Output& output, bool withLosses) : output_(output), withLosses_(withLosses) {}

  void show(const Found&, const Record& record) override { output_.write(jsonRecord(record, withLosses_) + '\n'); }

private:
  Output& output_;
  bool withLosses_;
};

}  // namespace

std::unique_ptr<Presentation> makePresentation(const Options& options, std::size_t transformWidth, Output& output) {
  if (options.json) return std::make_unique<JsonLines>(output, options.mode == Mode::check);
  switch (options.mode) {
    case Mode::stat: return std::make_unique<Table>(output, transformWidth);
    case Mode::check: return std::make_unique<LossLines>(output);
    case Mode::catalogue: return std::make_unique<Catalogue>(output);
    default: return std::make_unique<Content>(output);
  }
}

}  // namespace qarread
