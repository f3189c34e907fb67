#pragma once

#include <string>

namespace ku::i18n::detail {

/// The name of the process code, the encoding of file names and messages: that of the environment, UTF-8 if no
/// converter knows it, which is how the C library treats one that it does not know.
///
/// Threads  May be called by any thread at any time.
const std::string& process_code();

}  // namespace ku::i18n::detail
