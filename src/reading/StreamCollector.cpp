#include "StreamCollector.hpp"

#include "types/ByteStorage.hpp"

#include <opc/InputStream.hpp>

#include <algorithm>
#include <utility>

namespace Korvane::qardatainterfaces {

StreamCollector::Result StreamCollector::gather(QARByteArray& content) {
  if (!ended_ && !readToEnd()) return Result::stalled;
  ended_ = true;  // should there be no memory for the content
  if (total_ > 0) {
    QARByteArray gathered(bytes_.data(), total_);
    ByteStorage::swap(content, gathered);
  }
  ended_ = false;
  bytes_ = {};
  return std::exchange(total_, 0) > 0 ? Result::gathered : Result::nothing;
}

bool StreamCollector::readToEnd() {
  constexpr std::uint64_t step = 8192;
  constexpr int patience = 100;
  for (int idle = 0; idle < patience;) {
    bytes_.resize(total_);
    bytes_.resize(total_ + step);  // zeros, should the stream claim more than it places
    const std::uint64_t count = std::min(stream_.read(bytes_.data() + total_, step), step);
    total_ += count;
    idle = count > 0 ? 0 : idle + 1;
    if (stream_.exhausted()) return true;
  }
  return false;
}

}  // namespace Korvane::qardatainterfaces
