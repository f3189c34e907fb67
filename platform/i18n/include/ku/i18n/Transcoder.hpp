#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace ku::i18n {

/// A place where a conversion could not keep the text.
struct ConversionLoss {
  std::uint64_t offset;  ///< of the first byte, counted from the start of the whole input
  std::uint32_t length;  ///< bytes of the input
  char32_t character;    ///< what the target cannot express; U+FFFD if `malformed`
  bool malformed;        ///< the bytes are no character of the source encoding
};

/// Converts bytes in one encoding to bytes in another, tolerantly, in one pass.
///
/// The result is that of a tolerant `codecvt_string_to_ustring` followed by a tolerant `codecvt_ustring_to_string`;
/// both encodings are named as there. It is faster, holds no text between the two stages, and takes the text in
/// pieces of any size.
///
/// State      The text begins with the first call of `convert` and ends with the one that is told so. For another
///            text, make another transcoder.
/// Errors     The constructor raises `CvtExceptionBase` if it refuses an encoding. Everything may raise
///            `std::bad_alloc`; the transcoder must not be used again then.
/// Threads    Distinct transcoders are independent; one serves one thread at a time.
class [[gnu::visibility("default")]] Transcoder {
public:
  /// The least room for output that `convert` needs.
  static constexpr std::size_t least_room = 64;

  /// How far a call of `convert` has come.
  struct Progress {
    std::size_t consumed;  ///< input bytes that must not be offered again
    std::size_t written;   ///< output bytes written
    /// Nothing is left to do with this input. If not, call again with the rest and more room. Where the input is not
    /// the last, up to a few bytes of a character that it cuts may be left unconsumed: offer them again, with
    /// those that follow.
    bool done;
  };

  /// From the encoding named `from` to that named `to`; the empty name is the local code page.
  Transcoder(const std::string& from, const std::string& to);
  ~Transcoder();
  Transcoder(const Transcoder&) = delete;
  Transcoder& operator=(const Transcoder&) = delete;

  /// Has `tell` called for each loss, in the order of the input. Requires: nothing has been converted yet. `tell`
  /// must not raise anything but `std::bad_alloc`, nor call this object.
  void report_losses(std::function<void(const ConversionLoss&)> tell);

  /// Converts the next piece of the text; `last` tells that nothing follows it.
  /// Requires: there are `count` bytes at `bytes`, which may be null if that is 0, and room for `room` bytes at `to`,
  /// at least `least_room`. Bytes of `to` behind those written may be overwritten, up to `room`.
  Progress convert(const char* bytes, std::size_t count, bool last, char* to, std::size_t room);

  /// Whether anything in the input so far was no character of the source encoding.
  bool has_substituted_input() const noexcept;
  /// Whether the target encoding lacked a character so far, be it the U+FFFD that stands for malformed input.
  bool has_substituted_output() const noexcept;

private:
  class Conversion;
  std::unique_ptr<Conversion> conversion_;
};

}  // namespace ku::i18n
