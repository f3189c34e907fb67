#pragma once

#include <string>

namespace ku::i18n {

/// A locale by its POSIX name, `language[_TERRITORY][.ENCODING][@modifier]`.
///
/// The system need not have the locale installed: the name tells all. Only where it has no encoding, the C library is
/// asked which one it takes for the locale, if that is installed. An encoding that the converters do not know is
/// noticed when a converter is made for it.
///
/// Threads  A locale is a plain value. Both forms of `global` may be called by any thread at any time.
class [[gnu::visibility("default")]] ZrLocale {
public:
  /// `"C"` and `"POSIX"` are English in UTF-8; the empty name is that of the environment (see `global`).
  /// May raise `std::bad_alloc`.
  explicit ZrLocale(const std::string& name);

  /// The name as given; the environment's for the empty one.
  const std::string& name() const noexcept { return name_; }
  /// Language code such as "de", of the first of `languages()`; empty for "C" and "POSIX".
  const std::string& language() const noexcept { return language_; }
  /// In which languages messages are wanted, with their territories, the preferred one first and colons between them:
  /// "zh_TW:ja". Empty for "C" and "POSIX"; only the environment names several.
  const std::string& languages() const noexcept { return languages_; }
  /// Encoding as the name spells it. Where the name has none: that of the installed locale of this name (ISO-8859-1
  /// for "de_DE", ISO-8859-15 for "de_DE@euro"); "UTF-8" if there is no such locale, and for "C" and "POSIX".
  const std::string& encoding() const noexcept { return encoding_; }

  /// The process-wide current locale: of messages and of file content. It starts as the environment's. Its name and
  /// encoding are those of the first of LC_ALL, LC_CTYPE and LANG that is set and not empty, else "C". Its languages
  /// are that of the first of LC_ALL, LC_MESSAGES and LANG and, unless this is "C" or "POSIX", before it those that
  /// LANGUAGE lists, with colons between them.
  static ZrLocale global();
  /// Makes `next` the process-wide locale and returns the one before. File names do not follow it.
  static ZrLocale global(const ZrLocale& next);

private:
  [[gnu::visibility("hidden")]] static const ZrLocale& environment();
  [[gnu::visibility("hidden")]] void set_languages(const std::string& languages);

  std::string name_;
  std::string language_;
  std::string languages_;
  std::string encoding_;
};

}  // namespace ku::i18n
