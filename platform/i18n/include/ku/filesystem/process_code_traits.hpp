#pragma once

#include <string>

namespace ku::filesystem::detail {

/// Converts paths between UTF-16 and the process code (see `ku::i18n::to_string`), strictly: a path that one side
/// cannot express raises `ku::i18n::CvtInvalidCharacter`, so that it never names another file.
/// May be used by any thread at any time.
struct [[gnu::visibility("default")]] process_code_traits {
  using internal_string_type = std::u16string;  ///< UTF-16
  using external_string_type = std::string;     ///< the process code

  /// The path as the operating system takes it. A result with a zero byte counts as not expressible.
  static external_string_type to_external(const internal_string_type& path);
  /// The path that the operating system gave.
  static internal_string_type to_internal(const external_string_type& path);
};

/// The form of `path` that `ku::filesystem::status` takes: `process_code_traits::to_external`.
[[gnu::visibility("default")]] std::string make_native_form(const std::u16string& path);

}  // namespace ku::filesystem::detail
