#include "transcoding/Encoder.hpp"

#include "transcoding/IcuEncoder.hpp"
#include "transcoding/TableEncoder.hpp"
#include "transcoding/utf_encoders.hpp"

namespace ku::i18n::detail {

std::unique_ptr<Encoder> Encoder::make(const Encoding& encoding, Losses& losses) {
  switch (encoding.form()) {
    case Encoding::Form::code_page: return std::make_unique<TableEncoder>(CodePage::of(encoding), losses);
    case Encoding::Form::other: return std::make_unique<IcuEncoder>(encoding.make_converter(true), losses);
    default: return make_utf_encoder(encoding.form(), losses);
  }
}

}  // namespace ku::i18n::detail
