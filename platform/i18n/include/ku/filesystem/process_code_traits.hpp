#pragma once

#include <string>

namespace ku::filesystem::detail {

/// Converts paths between UTF-16 and the process code (see `ku::i18n::to_string`). The conversion is strict: a path
/// that cannot be converted raises `ku::i18n::CvtInvalidCharacter`, so that it never names another file. Each member
/// may also raise `std::bad_alloc`. Any thread may use it at any time.
struct [[gnu::visibility("default")]] process_code_traits {
  using internal_string_type = std::u16string;  ///< UTF-16
  using external_string_type = std::string;     ///< the process code

  /// A path for the operating system, from UTF-16. Raises the exception for a result with a zero byte as well.
  static external_string_type to_external(const internal_string_type& path);
  /// A path from the operating system, in UTF-16.
  static internal_string_type to_internal(const external_string_type& path);
};

/// Converts `path` to the form that `ku::filesystem::status` takes: `process_code_traits::to_external`.
[[gnu::visibility("default")]] std::string make_native_form(const std::u16string& path);

}  // namespace ku::filesystem::detail
