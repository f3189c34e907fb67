#include "Table.hpp"

#include "../Output.hpp"
#include "../printable.hpp"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace qarread {
namespace {

std::string orDash(const std::string& text) { return text.empty() ? "-" : text; }
std::string orDash(const std::optional<std::uint64_t>& number) { return number ? std::to_string(*number) : "-"; }

}  // namespace

Table::Table(Output& output, std::size_t transformWidth)
    : output_(output), transformWidth_(std::max(11, static_cast<int>(transformWidth)) + 2) {}

void Table::begin() { write("READER", "TRANSFORM", "BYTES IN", "BYTES OUT", "STATUS", "PATH"); }

void Table::show(const Found&, const Record& record) {
  write(orDash(record.reader), orDash(record.transform), orDash(record.in), orDash(record.out), record.status,
        printable(record.path));
}

void Table::write(const std::string& reader, const std::string& transform, const std::string& in,
                  const std::string& out, const std::string& status, const std::string& path) {
  std::ostringstream line;
  line << std::left << std::setw(11) << reader << std::setw(transformWidth_) << transform << std::right
       << std::setw(11) << in << std::setw(12) << out << "  " << std::left << std::setw(6) << status << "  " << path
       << '\n';
  output_.write(line.str());
}

}  // namespace qarread
