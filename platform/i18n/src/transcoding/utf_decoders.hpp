#pragma once

#include "converters/Encoding.hpp"
#include "transcoding/Decoder.hpp"

namespace ku::i18n::detail {

/// The decoder of an encoding form of Unicode.
std::unique_ptr<Decoder> make_utf_decoder(Encoding::Form form);

}  // namespace ku::i18n::detail
