#pragma once

#include "Presentation.hpp"

namespace qarread {

/// --stat: a row for each path.
class Table final : public Presentation {
public:
  Table(Output& output, std::size_t transformWidth);

  void begin() override;
  void show(const Found& found, const Record& record) override;

private:
  void write(const std::string& reader, const std::string& transform, const std::string& in, const std::string& out,
             const std::string& status, const std::string& path);

  Output& output_;
  int transformWidth_;
};

}  // namespace qarread
