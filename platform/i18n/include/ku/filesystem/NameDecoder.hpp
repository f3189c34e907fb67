#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ku::i18n::detail {
class IcuConverter;
}

namespace ku::filesystem {

/// Decodes file names, or parts of them, from the process code (see `ku::i18n::to_string`) to UTF-16.
///
/// Like `detail::process_code_traits::to_internal`, but returns none for bytes that are not valid text instead of
/// raising an exception. A decoder opens at most one converter, so use the same one for all parts of a name.
///
/// Errors   `decode` may raise `std::bad_alloc`; the decoder remains usable.
/// Threads  Distinct decoders are independent; one may be used by one thread at a time.
class [[gnu::visibility("default")]] NameDecoder {
public:
  NameDecoder() noexcept;
  ~NameDecoder();
  NameDecoder(const NameDecoder&) = delete;
  NameDecoder& operator=(const NameDecoder&) = delete;

  /// Decodes `bytes` as a complete text. Returns none if they are malformed or incomplete.
  std::optional<std::u16string> decode(std::string_view bytes);

private:
  std::unique_ptr<i18n::detail::IcuConverter> icu_;  // opened for the first text that is not ASCII
};

}  // namespace ku::filesystem
