#pragma once

#include "transcoding/Character.hpp"
#include "transcoding/Losses.hpp"

#include <cstddef>
#include <memory>

namespace ku::i18n::detail {

class Encoding;

/// Characters to bytes of one encoding, with its substitute for each that it lacks.
class Encoder {
public:
  /// Tells `losses` of all that is malformed or lacking. It must outlive the encoder.
  static std::unique_ptr<Encoder> make(const Encoding& encoding, Losses& losses);
  virtual ~Encoder() = default;

  /// Writes characters of the block as long as they fit, and returns the place behind the last byte. With room for
  /// `Transcoder::least_room` bytes it comes further.
  virtual char* encode(CharacterBlock& block, char* to, char* limit) = 0;

  /// Writes what ends the text, at most `Transcoder::least_room` bytes at a time; sets `done` when that is all.
  virtual char* finish(char* to, char*, bool& done) {
    done = true;
    return to;
  }

  /// Whether it holds no character that has not been written, nor a state that others would have to know.
  virtual bool is_between_characters() const noexcept { return true; }
};

}  // namespace ku::i18n::detail
