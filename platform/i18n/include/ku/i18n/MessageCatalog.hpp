#pragma once

#include <ku/i18n/ZrLocale.hpp>
#include <tavik_core/BaseMsgID.hpp>

#include <string>

namespace ku::i18n {

/// Finds the texts of messages in the language of a locale.
///
/// Threads  Any thread may use it at any time.
class [[gnu::visibility("default")]] MessageCatalog {
public:
  /// The text of the message that `id` names, with its arguments inserted unchanged.
  ///
  /// The text is English if the message has none in the language of `locale`. Raises `std::runtime_error` for a
  /// message that is not in the id's bundle or needs more arguments, `std::length_error` for an argument of 2^31
  /// units or more, and `std::bad_alloc`.
  static std::u16string get_message(const tavik_core::BaseMsgID& id, const ZrLocale& locale);
};

}  // namespace ku::i18n
