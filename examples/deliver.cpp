#include "deliver.hpp"

#include "reason.hpp"

namespace qarread {

using Korvane::qardatainterfaces::QARFileReader;
using Korvane::qardatainterfaces::QARMetaData;

void checkRead(QARFileReader& reader, const QARMetaData& meta) {
  // A transform gets empty input for a file that cannot be read, so this is checked first.
  if (const auto reason = reader.readError()) throw ReadFailure("not_good", "cannot be read" + inParentheses(reason));
  if (reader.readSucceeded()) return;
  auto report = meta.getUserData();
  const std::string transform = reader.getTransformId();
  if (report.empty() || report == transform) report = transform + ": the result is empty";  // losses are reported
  throw ReadFailure(reader.lastError() == QARFileReader::zero_length ? "zero_length" : "transform_failed",
                    "cannot be converted (" + report + ')');
}

void deliver(QARFileReader& reader, QARMetaData& meta, std::span<unsigned char> buffer,
             const std::function<void(const void* bytes, std::size_t size)>& take) {
  do {
    const auto count = reader.read(buffer.data(), static_cast<unsigned int>(buffer.size()), meta);
    checkRead(reader, meta);
    if (count == QARFileReader::failed) throw ReadFailure("not_good", "cannot be read");
    take(buffer.data(), count);
  } while (reader.more());
}

std::string lossOf(QARFileReader& reader, const QARMetaData& meta) {
  const auto report = meta.getUserData();
  return report == reader.getTransformId() ? "" : report;
}

}  // namespace qarread
