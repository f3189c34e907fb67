#include "transcoding/Decoder.hpp"

#include "transcoding/IcuDecoder.hpp"
#include "transcoding/TableDecoder.hpp"
#include "transcoding/utf_decoders.hpp"

namespace ku::i18n::detail {

std::unique_ptr<Decoder> Decoder::make(const Encoding& encoding, bool locates) {
  switch (encoding.form()) {
    case Encoding::Form::code_page: return std::make_unique<TableDecoder>(CodePage::of(encoding));
    case Encoding::Form::other: return std::make_unique<IcuDecoder>(encoding.make_converter(true), locates);
    default: return make_utf_decoder(encoding.form());
  }
}

}  // namespace ku::i18n::detail
