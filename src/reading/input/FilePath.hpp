#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Korvane::qardatainterfaces {

/// A caller's path, and how the file system and the registrations see it: up to its first zero unit, without the mark
/// "//:" that it may begin with.
/// Threads  To be used by one thread at a time.
class FilePath {
public:
  /// Requires: `path` outlives this object.
  explicit FilePath(const std::u16string& path) noexcept;

  /// As given.
  const std::u16string& given() const noexcept { return given_; }

  /// What of it is asked of the file system.
  std::u16string_view asked() const noexcept { return path_; }

  /// From the last dot of the last element to its end; empty without a dot. "." for a path that ends with a
  /// separator, unless it is a root.
  std::u16string_view extension() const noexcept;

  /// The path for the operating system. Raises `ku::i18n::CvtExceptionBase` if no name has it (see `QARPath`).
  const std::string& native() const;

private:
  std::u16string_view lastElement() const noexcept;

  const std::u16string& given_;
  std::u16string_view path_;
  mutable std::optional<std::string> native_;
};

}  // namespace Korvane::qardatainterfaces
