#pragma once

#include "transcoding/CodePage.hpp"
#include "transcoding/IcuEncoder.hpp"

namespace ku::i18n::detail {

/// Encodes to a stateless code page by its table.
class TableEncoder final : public Encoder {
public:
  TableEncoder(const CodePage& page, Losses& losses);

  char* encode(CharacterBlock& block, char* to, char* limit) override;
  char* finish(char* to, char* limit, bool& done) override;
  bool is_between_characters() const noexcept override { return !icu_ || icu_->is_between_characters(); }

private:
  char* encode_by_icu(CharacterBlock& block, char* to, char* limit);
  char* put(Entry entry, char* to) const noexcept;

  const CodePage& page_;
  Losses& losses_;
  Entry substitute_;
  std::unique_ptr<IcuEncoder> icu_;  // created lazily, for characters that depend on what follows
};

}  // namespace ku::i18n::detail
