#pragma once

#include <qardatainterfaces/QARByteArray.hpp>

#include <cstdint>
#include <vector>

namespace opc {
class InputStream;
}

namespace Korvane::qardatainterfaces {

/// Gathers the rest of a caller's stream.
class StreamCollector {
public:
  enum class Result { stalled, nothing, gathered };

  /// Requires: `stream` outlives this object.
  explicit StreamCollector(opc::InputStream& stream) noexcept : stream_(stream) {}

  /// Whether everything has been delivered.
  bool exhausted();

  /// Copies at most `size` bytes to `to` and returns how many; sets `isLast` if nothing is left. Bytes kept by an
  /// unfinished `gather` come first. If the stream throws, no byte is skipped.
  std::uint64_t read(unsigned char* to, std::uint64_t size, bool& isLast);

  /// Reads to the end of the stream, with at least one read. Makes `content` the bytes that it delivered, if there
  /// are any. If the stream stalls or something throws, `content` is unchanged, and the bytes so far are kept for the
  /// next call.
  Result gather(QARByteArray& content);

private:
  std::uint64_t kept() const noexcept { return total_ - taken_; }
  void forget() noexcept;
  std::uint64_t readKept(unsigned char* to, std::uint64_t size) noexcept;
  bool readToEnd();

  opc::InputStream& stream_;
  std::vector<unsigned char> bytes_;
  std::uint64_t total_ = 0;  // bytes gathered that have not become content
  std::uint64_t taken_ = 0;  // how many of them chunk reads have delivered
  bool ended_ = false;
};

}  // namespace Korvane::qardatainterfaces
