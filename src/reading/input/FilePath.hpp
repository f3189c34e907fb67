#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Korvane::qardatainterfaces {

/// A caller's path, and the part of it that is used for opening and for the extension. That part ends at the first
/// zero unit and leaves out a prefix "//:".
///
/// Threads  May be used by one thread at a time.
class FilePath {
public:
  /// Requires: `path` outlives this object.
  explicit FilePath(const std::u16string& path) noexcept;

  /// The path as given.
  const std::u16string& given() const noexcept { return given_; }

  /// The part of the path that is used.
  std::u16string_view effective() const noexcept { return path_; }

  /// From the last dot of the last element to its end; empty without a dot. "." for a path that ends with a
  /// separator, unless it is a root.
  std::u16string_view extension() const noexcept;

  /// The native path. Raises `ku::i18n::CvtExceptionBase` if there is none (see `QARPath::toNative`).
  const std::string& native() const;

private:
  std::u16string_view lastElement() const noexcept;

  const std::u16string& given_;
  std::u16string_view path_;
  mutable std::optional<std::string> native_;
};

}  // namespace Korvane::qardatainterfaces
