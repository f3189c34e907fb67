#include "transcode.hpp"

#include "Pace.hpp"
#include "types/ByteBuffer.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>
#include <string_view>

namespace Korvane::qardatainterfaces {
namespace {

/// A converter that is strict until it has to substitute: up to there, strict and tolerant results are the same.
template <class Converter>
class Stage {
public:
  explicit Stage(const std::string& encoding) : encoding_(encoding) {}

  template <class From, class To>
  ku::i18n::conversion_step convert(const From* from, std::size_t count, bool last, To* to, std::size_t room) {
    return attempt([&] { return converter().convert_some(from, count, last, to, room); });
  }

  Converter& converter() {
    if (!converter_) attempt([&] { converter_.emplace(encoding_, true); });
    return *converter_;
  }

  /// Does a part of the work of this stage, and raises what its failure stands for.
  template <class Work>
  auto attempt(Work work) {
    try {
      return work();
    } catch (...) {
      failed_ = true;
      if (isTolerant()) throw;
      throw rtxi18nutil::DeployedException(
          qar::qardatainterfaces::QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER());
    }
  }

  bool failed() const noexcept { return failed_; }

  void report() const {
    if (isTolerant()) std::cout << "Invalid character was detected." << std::endl;
  }

private:
  bool isTolerant() const noexcept { return converter_ && converter_->has_substituted(); }

  const std::string& encoding_;
  std::optional<Converter> converter_;
  bool failed_ = false;
};

/// The first stage.
class Source {
public:
  Source(const QARByteArray& bytes, const std::string& encoding)
      : stage_(encoding), next_(reinterpret_cast<const char*>(bytes.begin())), size_(bytes.size()), left_(size_) {}

  bool done() const noexcept { return done_; }
  std::size_t size() const noexcept { return size_; }
  std::size_t taken() const noexcept { return size_ - left_; }

  std::string_view rest() const noexcept { return {next_, left_}; }
  /// Takes the text up to there past this stage; `isDone` if it has come to its end.
  void skip(std::size_t count, bool isDone) noexcept {
    next_ += count;
    left_ -= count;
    done_ = isDone;
  }

  /// Whether what has been taken, has been given whole; where there is a direct way. A block holds what `most` bytes
  /// become, at a unit a byte, in all encodings that have one.
  bool isBetweenCharacters() { return stage_.converter().is_between_characters(); }

  /// The next part of the text, of at most `most` bytes.
  std::u16string_view next(std::size_t most) {
    const std::size_t count = std::min(most, left_);
    const auto step = stage_.convert(next_, count, count == left_, block_.data(), block_.size());
    skip(step.taken, step.done && step.taken == left_);
    return {block_.data(), step.placed};
  }

  /// Without interest in the text, only in whether all of it can be converted.
  void finish() {
    while (!done_ && !stage_.failed()) next(left_);
  }

  auto& stage() noexcept { return stage_; }

private:
  Stage<ku::i18n::codecvt_string_to_ustring> stage_;
  const char* next_;
  std::size_t size_;
  std::size_t left_;
  bool done_ = false;
  std::array<char16_t, Pace::most> block_;
};

/// The second stage.
class Sink {
public:
  Sink(Source& source, const std::string& encoding) : source_(source), stage_(encoding) {}

  /// Takes what both stages know at sight, without a way through UTF-16, and returns its length.
  std::size_t takeDirectly() {
    const auto& decoder = source_.stage().converter();
    const auto& encoder = stage_.converter();
    const std::size_t start = source_.taken();
    for (;;) {
      stage_.attempt([&] { makeRoom(); });
      if (!source_.isBetweenCharacters()) return source_.taken() - start;
      const auto text = source_.rest();
      const auto step = convert_directly(decoder, encoder, text.data(), text.size(), free(), room());
      source_.skip(step.taken, step.done);
      size_ += step.placed;
      if (source_.done() || room() >= least_room) return source_.taken() - start;
    }
  }

  void put(std::u16string_view text, bool last) {
    for (bool done = false; !done;) {
      stage_.attempt([&] { makeRoom(); });
      const auto step = stage_.convert(text.data(), text.size(), last, free(), room());
      size_ += step.placed;
      text.remove_prefix(step.taken);
      done = step.done;
    }
  }

  void moveTo(QARByteArray& out) { bytes_->moveTo(out, size_); }

  const auto& stage() const noexcept { return stage_; }

private:
  static constexpr std::size_t least_room = 128;

  char* free() noexcept { return reinterpret_cast<char*>(bytes_->data()) + size_; }
  std::size_t room() const noexcept { return bytes_->capacity() - size_; }

  // Closely, by what the text so far has become.
  void makeRoom() {
    constexpr std::size_t sample = 16384;
    if (!bytes_) bytes_.emplace(std::min(source_.size(), sample) + least_room);
    if (room() >= least_room) return;
    const double growth = static_cast<double>(size_) / static_cast<double>(std::max<std::size_t>(source_.taken(), 1));
    const auto whole = static_cast<std::size_t>(growth * 1.02 * static_cast<double>(source_.size()));
    bytes_->resize(std::max(whole, size_ + size_ / 8) + least_room);
  }

  Source& source_;
  Stage<ku::i18n::codecvt_ustring_to_string> stage_;
  std::optional<ByteBuffer> bytes_;
  std::size_t size_ = 0;
};

}  // namespace

void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to) {
  Source source(in, from);
  Sink sink(source, to);
  Pace pace;
  try {
    while (!source.done()) {
      pace.adapt(sink.takeDirectly());
      if (source.done()) break;
      const auto text = source.next(source.isBetweenCharacters() ? pace.run() : 1);
      sink.put(text, source.done());
    }
  } catch (...) {
    // The stages work block by block, and yet report as if one had come after the other.
    source.finish();
    source.stage().report();
    if (!source.stage().failed()) sink.stage().report();
    throw;
  }
  source.stage().report();
  sink.stage().report();
  sink.moveTo(out);
}

}  // namespace Korvane::qardatainterfaces
