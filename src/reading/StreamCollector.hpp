#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <cstdint>
#include <vector>

namespace opc {
class InputStream;
}

namespace Korvane::qardatainterfaces {

/// Gathers what a caller's stream has still to deliver.
class StreamCollector {
public:
  enum class Result { stalled, nothing, gathered };

  /// Requires: `stream` outlives this object.
  explicit StreamCollector(opc::InputStream& stream) noexcept : stream_(stream) {}

  opc::InputStream& stream() const noexcept { return stream_; }

  /// Reads to the end of the stream, with one read at least, and makes `content` what it delivered, unless that is
  /// nothing. If the stream stalls or something throws, `content` stays as it is, and the bytes so far are kept for
  /// the next call.
  Result gather(QARByteArray& content);

private:
  bool readToEnd();

  opc::InputStream& stream_;
  std::vector<unsigned char> bytes_;
  std::uint64_t total_ = 0;
  bool ended_ = false;
};

}  // namespace Korvane::qardatainterfaces
