#pragma once

#include <string>

namespace ku::i18n::detail {

/// The name of the process code, the encoding of file names and messages. It is the encoding of the environment, or
/// UTF-8 if no converter knows that encoding.
///
/// Threads  Any thread may call it at any time.
const std::string& process_code();

}  // namespace ku::i18n::detail
