#pragma once

#include "transcoding/Character.hpp"
#include "transcoding/Losses.hpp"

#include <cstddef>
#include <memory>

namespace ku::i18n::detail {

class Encoding;

/// Converts characters to bytes of one encoding, with the encoding's substitute for characters that it lacks.
class Encoder {
public:
  /// Reports all malformed and unmappable characters to `losses`, which must outlive the encoder.
  static std::unique_ptr<Encoder> make(const Encoding& encoding, Losses& losses);
  virtual ~Encoder() = default;

  /// Writes characters of the block while they fit, and returns the end of the output. With room for
  /// `Transcoder::least_room` bytes it always makes progress.
  virtual char* encode(CharacterBlock& block, char* to, char* limit) = 0;

  /// Writes the bytes that end the text, at most `Transcoder::least_room` in one call; sets `done` when it has
  /// written all.
  virtual char* finish(char* to, char*, bool& done) {
    done = true;
    return to;
  }

  /// Whether it holds no unwritten character, and no state that another encoder would need.
  virtual bool is_between_characters() const noexcept { return true; }
};

}  // namespace ku::i18n::detail
