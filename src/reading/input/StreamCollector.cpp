#include "StreamCollector.hpp"

#include "types/ByteArrayAccess.hpp"

#include <opc/InputStream.hpp>

#include <algorithm>

namespace Korvane::qardatainterfaces {

std::uint64_t StreamCollector::read(unsigned char* to, std::uint64_t size, bool& isLast) {
  const auto count = kept() > 0 ? readKept(to, size) : std::min(stream_.read(to, size), size);
  try {
    isLast = exhausted();
  } catch (...) {
    std::vector<unsigned char>(to, to + count).swap(bytes_);
    total_ = count;
    taken_ = 0;
    throw;
  }
  return count;
}

std::uint64_t StreamCollector::readKept(unsigned char* to, std::uint64_t size) noexcept {
  const auto count = std::min(kept(), size);
  std::copy_n(bytes_.data() + taken_, count, to);
  taken_ += count;
  if (kept() == 0) forget();
  return count;
}

bool StreamCollector::exhausted() { return kept() == 0 && stream_.exhausted(); }

StreamCollector::Result StreamCollector::gather(QARByteArray& content) {
  if (!ended_ && !readToEnd()) return Result::stalled;
  ended_ = true;  // remembered in case there is no memory for the content
  const auto count = kept();
  if (count > 0) {
    QARByteArray gathered(bytes_.data() + taken_, count);
    ByteArrayAccess::swap(content, gathered);
  }
  forget();
  return count > 0 ? Result::gathered : Result::nothing;
}

void StreamCollector::forget() noexcept {
  bytes_ = std::vector<unsigned char>();  // `= {}` would keep the memory
  total_ = 0;
  taken_ = 0;
  ended_ = false;
}

bool StreamCollector::readToEnd() {
  constexpr std::uint64_t step = 8192;
  constexpr int patience = 100;
  for (int idle = 0; idle < patience;) {
    bytes_.resize(total_ + step);  // defined bytes, even if the stream claims more than it has placed
    const std::uint64_t count = std::min(stream_.read(bytes_.data() + total_, step), step);
    total_ += count;
    idle = count > 0 ? 0 : idle + 1;
    if (stream_.exhausted()) return true;
  }
  return false;
}

}  // namespace Korvane::qardatainterfaces
