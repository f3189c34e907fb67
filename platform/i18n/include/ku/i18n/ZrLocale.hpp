#pragma once

#include <string>

namespace ku::i18n {

/// A locale by its POSIX name, `language[_TERRITORY][.ENCODING][@modifier]`.
///
/// Only the name is looked at; the system need not have the locale installed. An encoding that the converters
/// do not know is noticed when a converter is made for it.
///
/// Threads  A locale is a plain value. Both forms of `global` may be called by any thread at any time.
class [[gnu::visibility("default")]] ZrLocale {
public:
  /// `"C"` and `"POSIX"` are English in UTF-8; the empty name is that of the environment (see `global`).
  explicit ZrLocale(const std::string& name);

  /// The name as given; the environment's for the empty one.
  const std::string& name() const noexcept { return name_; }
  /// Language code such as "de"; empty for "C" and "POSIX".
  const std::string& language() const noexcept { return language_; }
  /// Encoding as the name spells it; "UTF-8" where the name has none.
  const std::string& encoding() const noexcept { return encoding_; }

  /// The process-wide current locale: of messages and of file content. It starts as the environment's: the
  /// first of LC_ALL, LC_CTYPE and LANG that is set and not empty, else "C".
  static ZrLocale global();
  /// Makes `next` the process-wide locale and returns the one before. File names do not follow it.
  static ZrLocale global(const ZrLocale& next);

private:
  std::string name_;
  std::string language_;
  std::string encoding_;
};

}  // namespace ku::i18n
