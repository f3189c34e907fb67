#pragma once

#include <string>
#include <string_view>

namespace Korvane::qardatainterfaces {

/// A caller's path as the file system and the registrations see it: up to its first zero unit, without the mark
/// "//:" that it may begin with.
class FilePath {
public:
  /// Requires: `path` outlives this object.
  explicit FilePath(std::u16string_view path) noexcept;

  /// From the last dot of the last element to its end; empty without a dot. "." for a path that ends with a
  /// separator, unless it is a root.
  std::u16string_view extension() const noexcept;

  /// The path for the operating system. Raises `ku::i18n::CvtExceptionBase` if the process code cannot express it.
  std::string native() const;

private:
  std::u16string_view lastElement() const noexcept;

  std::u16string_view path_;
};

}  // namespace Korvane::qardatainterfaces
