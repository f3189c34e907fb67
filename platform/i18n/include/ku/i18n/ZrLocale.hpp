#pragma once

#include <string>

namespace ku::i18n {

/// A locale by its POSIX name, `language[_TERRITORY][.ENCODING][@modifier]`.
///
/// The locale need not be installed: everything comes from the name. Only if the name has no encoding is the C
/// library asked for the encoding of the locale, if it is installed. An unknown encoding is not an error here; making
/// a converter for it is.
///
/// Threads  A locale is a plain value. Any thread may call both forms of `global` at any time.
class [[gnu::visibility("default")]] ZrLocale {
public:
  /// `"C"` and `"POSIX"` are English in UTF-8; the empty name means the locale of the environment (see `global`).
  /// May raise `std::bad_alloc`.
  explicit ZrLocale(const std::string& name);

  /// The name as given, or the environment's name if the given one is empty.
  const std::string& name() const noexcept { return name_; }
  /// Language code such as "de": the first of `languages()`, without a territory. Empty for "C" and "POSIX".
  const std::string& language() const noexcept { return language_; }
  /// The languages of messages, the preferred one first, separated by colons and with their territories: "zh_TW:ja".
  /// Empty for "C" and "POSIX". Only the locale of the environment may have several.
  const std::string& languages() const noexcept { return languages_; }
  /// The encoding as written in the name. If the name has none, the encoding of the installed locale of this name
  /// (ISO-8859-1 for "de_DE", ISO-8859-15 for "de_DE@euro"). "UTF-8" if no such locale is installed, and for "C" and
  /// "POSIX".
  const std::string& encoding() const noexcept { return encoding_; }

  /// The process-wide current locale, used for messages and for file content. Initially that of the environment:
  /// - Name and encoding are those of the first of LC_ALL, LC_CTYPE and LANG that is set and not empty, else "C".
  /// - The language is that of the first of LC_ALL, LC_MESSAGES and LANG that is set and not empty. Unless it is
  ///   "C" or "POSIX", the languages listed in LANGUAGE, separated by colons, come before it.
  static ZrLocale global();
  /// Makes `next` the process-wide locale and returns the previous one. This has no effect on file names.
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
