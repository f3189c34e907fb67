#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ku::i18n {

/// A part of the input that a conversion could not keep.
struct ConversionLoss {
  std::uint64_t offset;  ///< offset of the first byte from the start of the whole input
  std::uint32_t length;  ///< number of bytes of the input
  char32_t character;    ///< the character that the target lacks; U+FFFD if `malformed`
  bool malformed;        ///< whether the bytes are malformed in the source encoding
};

/// Converts bytes in one encoding to bytes in another, tolerantly, in one pass.
///
/// The result is the same as that of a tolerant `codecvt_string_to_ustring` followed by a tolerant
/// `codecvt_ustring_to_string`, and encodings have the same names. It is faster, stores no intermediate UTF-16, and
/// takes the text in pieces of any size.
///
/// State      The text begins with the first call of `convert`. It ends when a call whose argument `last` is true
///            returns `done`. For another text, make another transcoder.
/// Errors     The constructor raises `CvtExceptionBase` if it refuses an encoding. Every member may raise
///            `std::bad_alloc`; the transcoder must not be used after that.
/// Threads    Distinct transcoders are independent; one may be used by one thread at a time.
class [[gnu::visibility("default")]] Transcoder {
public:
  /// The least room for output that `convert` needs.
  static constexpr std::size_t least_room = 64;

  /// The result of a call of `convert`.
  struct Progress {
    std::size_t consumed;  ///< input bytes consumed; do not pass them again
    std::size_t written;   ///< output bytes written
    /// Whether this piece of input is finished. If not, call again with the rest of it and with room for more output.
    /// Unless it was the last piece, a few bytes of an incomplete character at its end may be left unconsumed: pass
    /// them again at the start of the next piece.
    bool done;
  };

  /// From the encoding named `from` to the one named `to`; the empty name is the local code page.
  Transcoder(const std::string& from, const std::string& to);
  ~Transcoder();
  Transcoder(const Transcoder&) = delete;
  Transcoder& operator=(const Transcoder&) = delete;

  /// Sets a function that is called for each loss, in the order of the input. Requires: nothing has been converted
  /// yet. `tell` must not raise anything but `std::bad_alloc`, nor call this object.
  void report_losses(std::function<void(const ConversionLoss&)> tell);

  /// Converts the next piece of the text; `last` says that it is the last one.
  /// Requires: `bytes` points to `count` bytes; it may be null if `count` is 0. `to` has room for `room` bytes, which
  /// is at least `least_room`. All `room` bytes at `to` may be overwritten, also those after the ones written.
  Progress convert(const char* bytes, std::size_t count, bool last, char* to, std::size_t room);

  /// Whether any input so far was malformed in the source encoding.
  bool has_substituted_input() const noexcept;
  /// Whether the target encoding lacked any character so far, including a U+FFFD that stands for malformed input.
  bool has_substituted_output() const noexcept;

private:
  class Conversion;
  std::unique_ptr<Conversion> conversion_;
};

}  // namespace ku::i18n
