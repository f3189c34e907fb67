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

  /// Whether there is nothing more to deliver.
  bool exhausted();

  /// What a gathering that did not end has kept comes first. Places at most `size` bytes and returns how many; sets
  /// `isLast` if there is nothing more. If the stream throws, no byte is skipped.
  std::uint64_t read(unsigned char* to, std::uint64_t size, bool& isLast);

  /// Reads to the end of the stream, with one read at least, and makes `content` what it delivered, unless that is
  /// nothing. If the stream stalls or something throws, `content` stays as it is, and the bytes so far are kept for
  /// the next call.
  Result gather(QARByteArray& content);

private:
  std::uint64_t kept() const noexcept { return total_ - taken_; }
  void forget() noexcept;
  std::uint64_t readKept(unsigned char* to, std::uint64_t size) noexcept;
  bool readToEnd();

  opc::InputStream& stream_;
  std::vector<unsigned char> bytes_;
  std::uint64_t total_ = 0;  // gathered and not yet made content,
  std::uint64_t taken_ = 0;  // of which so many bytes went out by chunk reads
  bool ended_ = false;
};

}  // namespace Korvane::qardatainterfaces
