#include "LossLines.hpp"

#include "../Output.hpp"
#include "../jsonText.hpp"
#include "../printable.hpp"
#include "codePoint.hpp"

namespace qarread {
namespace {

std::string describe(const LossAt& loss, const Findings& findings) {
  if (loss.place.malformed) return hexadecimal(loss.bytes, " ") + " is malformed in " + findings.from;
  return codePoint(loss.place.character) + " is not in " + findings.to;
}

}  // namespace

void LossLines::show(const Found&, const Record& record) {
  if (!record.findings) return;
  const auto& findings = *record.findings;
  const auto path = printable(record.path);
  std::string lines;
  for (const auto& loss : findings.first)
    lines += path + ':' + std::to_string(loss.position.line) + ':' + std::to_string(loss.position.column) + ": " +
             describe(loss, findings) + '\n';
  if (const auto more = findings.losses() - findings.first.size(); more > 0)
    lines += path + ": and " + std::to_string(more) + (more == 1 ? " more loss\n" : " more losses\n");
  lines += path + (findings.isReversible ? ": comes back byte for byte\n" : ": does not come back byte for byte\n");
  output_.write(lines);
}

}  // namespace qarread
