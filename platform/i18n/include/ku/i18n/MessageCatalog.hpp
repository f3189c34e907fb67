#pragma once

#include <ku/i18n/ZrLocale.hpp>
#include <tavik_core/BaseMsgID.hpp>

#include <string>

namespace ku::i18n {

/// Finds the texts of messages in the language of a locale.
///
/// Threads  May be used by any thread at any time.
class [[gnu::visibility("default")]] MessageCatalog {
public:
  /// The text of the message that `id` names, its arguments inserted as they are.
  ///
  /// A language without a text of its own gives the English one. Raises `std::runtime_error` for a message that
  /// the id's bundle does not hold, `std::length_error` for an argument of 2^31 units or more, and `std::bad_alloc`.
  static std::u16string get_message(const tavik_core::BaseMsgID& id, const ZrLocale& locale);
};

}  // namespace ku::i18n
