#pragma once

#include "converters/IcuConverter.hpp"
#include "transcoding/Encoder.hpp"

#include <array>
#include <vector>

namespace ku::i18n::detail {

/// Encodes by ICU: for stateful encodings and encodings with signatures or their own algorithms.
class IcuEncoder final : public Encoder {
public:
  IcuEncoder(std::unique_ptr<IcuConverter> icu, Losses& losses);

  char* encode(CharacterBlock& block, char* to, char* limit) override;
  /// Like `encode`, for at most one character.
  char* encode_one(CharacterBlock& block, char* to, char* limit);
  char* finish(char* to, char* limit, bool& done) override;
  /// Whether everything consumed is written, except characters whose bytes depend on the next one.
  bool is_done() const noexcept { return is_done_; }
  bool is_between_characters() const noexcept override { return is_done_ && icu_->encoding_pending() == 0; }

private:
  void take(CharacterBlock& block, std::size_t most);
  char* write(char* to, char* limit, bool last);
  void note_substitutions();

  std::unique_ptr<IcuConverter> icu_;
  Losses& losses_;
  std::array<char16_t, 1024> units_;
  const char16_t* next_ = nullptr;  // [next_, end_) are the units that ICU has not consumed
  const char16_t* end_ = nullptr;
  bool is_done_ = true;          // whether ICU has consumed and written all of its input
  std::vector<Character> open_;  // if losses are located: the characters that ICU may still substitute
  std::vector<IcuConverter::Substitution> substituted_;
};

}  // namespace ku::i18n::detail
