#include "transcode.hpp"

#include "types/ByteBuffer.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

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
    return attempt([&] {
      if (!converter_) converter_.emplace(encoding_, true);
      return converter_->convert_some(from, count, last, to, room);
    });
  }

  /// Does a part of the work of this stage.
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

/// The first stage: gives the text in blocks that stay in the processor's cache.
class Source {
public:
  Source(const QARByteArray& bytes, const std::string& encoding)
      : stage_(encoding), next_(reinterpret_cast<const char*>(bytes.begin())), left_(bytes.size()) {}

  bool done() const noexcept { return done_; }

  std::u16string_view next() {
    const auto step = stage_.convert(next_, left_, true, block_.data(), block_.size());
    next_ += step.taken;
    left_ -= step.taken;
    done_ = step.done;
    return {block_.data(), step.placed};
  }

  /// Without interest in the text, only in whether all of it can be converted.
  void finish() {
    while (!done_ && !stage_.failed()) next();
  }

  const auto& stage() const noexcept { return stage_; }

private:
  Stage<ku::i18n::codecvt_string_to_ustring> stage_;
  const char* next_;
  std::size_t left_;
  bool done_ = false;
  std::array<char16_t, 16384> block_;
};

/// The second stage.
class Sink {
public:
  Sink(const std::string& encoding, std::size_t expected) : stage_(encoding), expected_(expected) {}

  void put(std::u16string_view text, bool last) {
    for (bool done = false; !done;) {
      stage_.attempt([&] { makeRoom(); });
      const auto step = stage_.convert(text.data(), text.size(), last,
                                       reinterpret_cast<char*>(bytes_->data()) + size_, bytes_->capacity() - size_);
      size_ += step.placed;
      text.remove_prefix(step.taken);
      done = step.done;
    }
  }

  void moveTo(QARByteArray& out) { bytes_->moveTo(out, size_); }

  const auto& stage() const noexcept { return stage_; }

private:
  void makeRoom() {
    constexpr std::size_t longest_character = 16;
    if (!bytes_) bytes_.emplace(expected_ + longest_character);
    if (bytes_->capacity() - size_ < longest_character) bytes_->resize(size_ + size_ / 2 + longest_character);
  }

  Stage<ku::i18n::codecvt_ustring_to_string> stage_;
  std::size_t expected_;
  std::optional<ByteBuffer> bytes_;
  std::size_t size_ = 0;
};

}  // namespace

void transcode(const QARByteArray& in, QARByteArray& out, const std::string& from, const std::string& to) {
  Source source(in, from);
  Sink sink(to, in.size());
  try {
    while (!source.done()) {
      const auto text = source.next();
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
