#include "OnePass.hpp"

#if __has_include(<ku/i18n/Transcoder.hpp>)  // optional: a platform may lack it

#include "types/ByteBuffer.hpp"

#include <ku/i18n/Transcoder.hpp>

#include <algorithm>
#include <array>

namespace Korvane::qardatainterfaces {
namespace {

using ku::i18n::Transcoder;

/// The output written so far.
class Output {
public:
  explicit Output(std::size_t inputSize) : inputSize_(inputSize), bytes_(std::min(inputSize, sample) + slack) {}

  char* free() noexcept { return reinterpret_cast<char*>(bytes_.data()) + size_; }
  std::size_t room() const noexcept { return bytes_.capacity() - size_; }
  void add(std::size_t count) noexcept { size_ += count; }

  /// Resizes the storage for the whole output, estimated from the output of the first `consumed` bytes.
  void makeRoom(std::size_t consumed) {
    if (room() >= Transcoder::least_room) return;
    const double growth = static_cast<double>(size_) / static_cast<double>(std::max<std::size_t>(consumed, 1));
    const auto whole = static_cast<std::size_t>(growth * 1.02 * static_cast<double>(inputSize_));
    bytes_.resize(std::max(whole, size_ + size_ / 8) + slack);
  }

  void moveTo(QARByteArray& out) { bytes_.moveTo(out, size_); }

private:
  static constexpr std::size_t sample = 16384;
  static constexpr std::size_t slack = 2 * Transcoder::least_room;

  std::size_t inputSize_;
  ByteBuffer bytes_;
  std::size_t size_ = 0;
};

}  // namespace

std::optional<LossyStages> transcodeInOnePass(const QARByteArray& in, QARByteArray& out, const std::string& from,
                                              const std::string& to) noexcept try {
  Transcoder transcoder(from, to);
  Output output(in.size());
  const auto* const bytes = reinterpret_cast<const char*>(in.begin());
  std::size_t consumed = 0;
  for (bool done = false; !done;) {
    output.makeRoom(consumed);
    const auto step = transcoder.convert(bytes + consumed, in.size() - consumed, true, output.free(), output.room());
    consumed += step.consumed;
    output.add(step.written);
    done = step.done;
  }
  output.moveTo(out);
  return LossyStages{transcoder.has_substituted_input(), transcoder.has_substituted_output()};
} catch (...) {
  return std::nullopt;
}

QARConversionLoss locateLosses(const QARByteArray& in, const std::string& from, const std::string& to) {
  QARConversionLoss result;
  Transcoder transcoder(from, to);
  transcoder.report_losses([&result](const ku::i18n::ConversionLoss& loss) {
    if (loss.malformed)
      ++result.malformed;
    else
      ++result.unmappable;
    if (result.places.size() == QARConversionLoss::most_places) return;
    result.places.push_back({loss.offset, loss.length, loss.character, loss.malformed});
  });
  std::array<char, 16384> discarded;
  const auto* bytes = reinterpret_cast<const char*>(in.begin());
  const auto* const end = bytes + in.size();
  for (bool done = false; !done;) {
    const auto step =
        transcoder.convert(bytes, static_cast<std::size_t>(end - bytes), true, discarded.data(), discarded.size());
    bytes += step.consumed;
    done = step.done;
  }
  return result;
}

}  // namespace Korvane::qardatainterfaces

#else

namespace Korvane::qardatainterfaces {

std::optional<LossyStages> transcodeInOnePass(const QARByteArray&, QARByteArray&, const std::string&,
                                              const std::string&) noexcept {
  return std::nullopt;
}

QARConversionLoss locateLosses(const QARByteArray&, const std::string&, const std::string&) { return {}; }

}  // namespace Korvane::qardatainterfaces

#endif
