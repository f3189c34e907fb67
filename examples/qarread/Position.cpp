#include "Position.hpp"

// A platform without the transcoder reports no places of losses.
#if __has_include(<ku/i18n/Transcoder.hpp>)

#include <ku/i18n/Transcoder.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace qarread {
namespace {

using ku::i18n::Transcoder;

/// Decodes a text, and finds the positions of places in it, which must be asked for in their order.
class Cursor {
public:
  Cursor(std::string_view text, const std::string& encoding) : text_(text), decoder_(encoding, "UTF-32LE") {}

  Position find(const Korvane::qardatainterfaces::QARConversionLoss::Place& place) {
    if (end_ <= place.offset) {  // what can be decoded from the bytes before the place comes before it
      const auto pass = [this](char32_t character) { step(character); };
      std::for_each(waiting_.begin(), waiting_.end(), pass);
      waiting_.clear();
      decode(place.offset, pass);
    }
    // The bytes of the place may also complete characters before it. These differ from its own character: otherwise,
    // they would be places, too. A lone surrogate is decoded as U+FFFD.
    const bool isSurrogate = place.character >= 0xD800 && place.character <= 0xDFFF;
    const auto wanted = isSurrogate ? U'\uFFFD' : place.character;
    for (const auto start = position_;;) {
      while (!waiting_.empty()) {
        const auto found = position_;
        const auto character = waiting_.front();
        waiting_.erase(0, 1);
        step(character);
        if (character == wanted) return found;
      }
      if (end_ == text_.size() || end_ >= place.offset + place.length + lookahead) return start;
      decode(end_ + 1, [this](char32_t character) { waiting_ += character; });
    }
  }

private:
  static constexpr std::size_t lookahead = 16;  // longer than a character or an escape sequence

  void step(char32_t character) {
    if (character == U'\n')
      position_ = {position_.line + 1, 1};
    else
      ++position_.column;
  }

  /// Decodes up to `end`, and passes the characters to `take`.
  template <class Take>
  void decode(std::size_t end, Take take) {
    std::array<char32_t, 1024> characters;
    for (bool done = false; !done;) {
      const auto progress = decoder_.convert(text_.data() + consumed_, end - consumed_, end == text_.size(),
                                             reinterpret_cast<char*>(characters.data()), sizeof characters);
      consumed_ += progress.consumed;
      done = progress.done;
      std::for_each_n(characters.begin(), progress.written / sizeof(char32_t), take);
    }
    end_ = end;
  }

  std::string_view text_;
  Transcoder decoder_;
  std::size_t end_ = 0;       // of the bytes that the decoder has been given
  std::size_t consumed_ = 0;  // at most `end_`
  std::u32string waiting_;    // characters that have been decoded since the last place
  Position position_;         // of the first one of them
};

}  // namespace

std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>& places,
                                  const Korvane::qardatainterfaces::QARByteArray& text, const std::string& encoding) {
  std::vector<Position> positions;
  positions.reserve(places.size());
  Cursor cursor({reinterpret_cast<const char*>(text.begin()), text.size()}, encoding);
  for (const auto& place : places) positions.push_back(cursor.find(place));
  return positions;
}

}  // namespace qarread

#else

namespace qarread {

std::vector<Position> positionsOf(const std::vector<Korvane::qardatainterfaces::QARConversionLoss::Place>&,
                                  const Korvane::qardatainterfaces::QARByteArray&, const std::string&) {
  return {};
}

}  // namespace qarread

#endif
