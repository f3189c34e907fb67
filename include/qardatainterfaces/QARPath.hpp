#pragma once

#include <string>
#include <string_view>

namespace Korvane::qardatainterfaces {

/// Converts native file names, which are bytes, to the UTF-16 paths that a `QARFileReaderFactory` takes, and back.
///
/// Names     Linux allows every byte in a name except zero and '/', regardless of the process code, which is the
///           encoding of the environment's locale. Bytes that are valid text in the process code become that text.
///           Every other byte becomes one unit: U+DC80 for byte 80 to U+DCFF for byte FF. Valid text never contains
///           these units unpaired, so two different names never have the same path.
/// Errors    Each member may throw `std::bad_alloc`.
/// Threads   May be used by any thread at any time.
class [[gnu::visibility("default")]] QARPath {
public:
  QARPath() = delete;

  /// The UTF-16 path for a native name or path, for example an element of `argv`, a name read from a directory, or
  /// `std::filesystem::path::native()`.
  ///
  /// Each byte that the process code cannot decode becomes one unit, U+DC80 to U+DCFF. So does each byte that would
  /// be encoded differently on the way back. In a process code that uses bytes below 80 for more than ASCII, such as
  /// ISO-2022-JP, such bytes become U+DC01 to U+DC7F. `toNative` returns the same bytes. For bytes that include a
  /// zero, which no name does, the result is a path for which `toNative` raises an exception.
  static std::u16string fromNative(std::string_view path);

  /// The native name for a UTF-16 path: `toNative(fromNative(name))` is `name`.
  ///
  /// Raises `ku::i18n::CvtExceptionBase` if `fromNative` returns this path for no name. That is so for a character
  /// that the process code lacks, for an unpaired surrogate that stands for no byte, for a zero unit, and for units
  /// U+DC80 to U+DCFF whose bytes together are valid text.
  static std::string toNative(const std::u16string& path);
};

}  // namespace Korvane::qardatainterfaces
