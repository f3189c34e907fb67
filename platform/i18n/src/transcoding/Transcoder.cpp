#include <ku/i18n/Transcoder.hpp>

#include "converters/Encoding.hpp"
#include "transcoding/Decoder.hpp"
#include "transcoding/Encoder.hpp"
#include "transcoding/Losses.hpp"
#include "transcoding/Pace.hpp"
#include "transcoding/Route.hpp"

#include <algorithm>
#include <utility>

namespace ku::i18n {

using namespace detail;

/// The kernel of the route converts runs of characters. Where it stops, decoder and encoder, which can convert
/// everything, convert a run of text; then the kernel continues.
class Transcoder::Conversion {
public:
  Conversion(const Encoding& from, const Encoding& to) : from_(from), to_(to), route_(Route::between(from, to)) {}

  Losses& losses() noexcept { return losses_; }
  const Losses& losses() const noexcept { return losses_; }

  Progress convert(const char* bytes, std::size_t count, bool last, char* to, std::size_t room) {
    ByteCursor c{bytes, bytes + count, to, to + room};
    const bool done = advance(c, last);
    const auto consumed = static_cast<std::size_t>(c.from - bytes);
    offset_ += consumed;
    return {consumed, static_cast<std::size_t>(c.to - to), done};
  }

private:
  // Needed only for text that the kernel does not convert.
  struct Stages {
    Stages(const Encoding& from, const Encoding& to, Losses& losses)
        : decoder(Decoder::make(from, losses.are_located())), encoder(Encoder::make(to, losses)) {}

    std::unique_ptr<Decoder> decoder;
    std::unique_ptr<Encoder> encoder;
    CharacterBlock block;
  };

  // Returns whether the piece is finished; otherwise there is no more room.
  bool advance(ByteCursor& c, bool last) {
    const char* const start = c.from;
    for (;;) {
      if (stages_ && !write_block(c)) return false;
      if (route_ && is_between_characters()) {
        const char* const before = c.from;
        c = route_->convert(c);
        pace_.adapt(static_cast<std::size_t>(c.from - before));
        if (c.left() == 0 && !stages_) return true;
        if (c.room() < least_room) return false;
      }
      if (!stages_) stages_ = std::make_unique<Stages>(from_, to_, losses_);
      if (!read_run(c, last, offset_ + static_cast<std::size_t>(c.from - start)) && stages_->block.is_empty())
        return !last || finish(c);
    }
  }

  bool is_between_characters() const noexcept {
    return !stages_ || (stages_->decoder->is_between_characters() && stages_->encoder->is_between_characters());
  }

  // Returns whether the whole block has been written.
  bool write_block(ByteCursor& c) {
    c.to = stages_->encoder->encode(stages_->block, c.to, c.limit);
    if (!stages_->block.is_empty() || c.room() < least_room) return false;
    stages_->block.clear();
    return true;
  }

  // Returns whether any input was consumed.
  bool read_run(ByteCursor& c, bool last, std::uint64_t offset) {
    if (has_ended_) return false;
    const std::size_t run = route_ ? std::min(pace_.run(), c.left()) : c.left();
    for (const std::size_t bytes : {run, c.left()}) {
      const bool ends = last && bytes == c.left();
      const auto consumed = stages_->decoder->decode(c.from, bytes, ends, offset, stages_->block);
      c.from += consumed;
      has_ended_ = ends && consumed == bytes;
      if (consumed > 0 || has_ended_) return true;
    }
    return false;
  }

  bool finish(ByteCursor& c) {
    bool done = false;
    c.to = stages_->encoder->finish(c.to, c.limit, done);
    return done;
  }

  const Encoding& from_;
  const Encoding& to_;
  Losses losses_;
  std::unique_ptr<const Route> route_;
  Pace pace_;
  std::unique_ptr<Stages> stages_;
  std::uint64_t offset_ = 0;  // offset of the current piece in the whole input
  bool has_ended_ = false;    // whether the decoder has consumed the last byte of the text
};

Transcoder::Transcoder(const std::string& from, const std::string& to)
    : conversion_(std::make_unique<Conversion>(Encoding::named(from), Encoding::named(to))) {}
Transcoder::~Transcoder() = default;

void Transcoder::report_losses(std::function<void(const ConversionLoss&)> tell) {
  conversion_->losses().report_to(std::move(tell));
}

Transcoder::Progress Transcoder::convert(const char* bytes, std::size_t count, bool last, char* to,
                                         std::size_t room) {
  return conversion_->convert(bytes, count, last, to, room);
}

bool Transcoder::has_substituted_input() const noexcept { return conversion_->losses().in_input(); }
bool Transcoder::has_substituted_output() const noexcept { return conversion_->losses().in_output(); }

}  // namespace ku::i18n
