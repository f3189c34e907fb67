#pragma once

#include <string>
#include <string_view>

namespace Korvane::qardatainterfaces {

/// Turns names of files as the system has them into the paths that a `QARFileReaderFactory` takes, and back.
///
/// Names     Linux allows any bytes in a name but zero and '/', whatever the process code is, the encoding of the
///           environment's locale. What is text in the process code is that text in the path; a byte that is not
///           becomes a unit of its own, U+DC80 for byte 80 to U+DCFF for byte FF. No text has these units alone, so
///           no two names have one path.
/// Errors    Everything may throw `std::bad_alloc`.
/// Threads   May be used by any thread at any time.
class [[gnu::visibility("default")]] QARPath {
public:
  QARPath() = delete;

  /// The path for a name, or for a whole path of names: from `argv`, a directory or `std::filesystem::path::native`.
  ///
  /// Bytes that the process code cannot decode, or would write otherwise than they stand, become U+DC80 to U+DCFF,
  /// one each; in a process code that uses bytes below 80 for more than ASCII, such as ISO-2022-JP, these may become
  /// U+DC01 to U+DC7F. `toNative` gives back the same bytes.
  static std::u16string fromNative(std::string_view path);

  /// The name for a path, in the bytes that the system takes: `toNative(fromNative(name))` is `name`.
  ///
  /// Raises `ku::i18n::CvtExceptionBase` where no name has this path: for a character that the process code lacks, a
  /// surrogate that stands alone and for no byte, a zero, and for bytes so spelt that they would be read as a
  /// character.
  static std::string toNative(const std::u16string& path);
};

}  // namespace Korvane::qardatainterfaces
