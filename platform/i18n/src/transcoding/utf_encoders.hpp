#pragma once

#include "converters/Encoding.hpp"
#include "transcoding/Encoder.hpp"

namespace ku::i18n::detail {

/// The encoder of an encoding form of Unicode.
std::unique_ptr<Encoder> make_utf_encoder(Encoding::Form form, Losses& losses);

}  // namespace ku::i18n::detail
