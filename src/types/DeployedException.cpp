#include <qardatainterfaces/DeployedException.hpp>

#include <ku/i18n/MessageCatalog.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/to_string.hpp>

#include <algorithm>

namespace Korvane::rtxi18nutil {

DeployedException::DeployedException(const tavik_core::BaseMsgID& id) noexcept : identifier_(&id.name()) {
  try {
    auto text = ku::i18n::MessageCatalog::get_message(id, ku::i18n::ZrLocale::global());
    std::replace(text.begin(), text.end(), u'\0', u'\uFFFD');  // what() would end at a zero
    message_ = ku::i18n::to_string(text);
  } catch (...) {  // what() returns the name of the message id
  }
}

DeployedException::DeployedException(const DeployedException& other) noexcept
    : std::exception(other), identifier_(other.identifier_) {
  try {
    message_ = other.message_;
  } catch (...) {  // what() returns the name of the message id
  }
}

DeployedException& DeployedException::operator=(const DeployedException& other) noexcept {
  DeployedException copy(other);
  message_.swap(copy.message_);
  identifier_ = copy.identifier_;
  return *this;
}

DeployedException::~DeployedException() = default;

const char* DeployedException::what() const noexcept { return (message_.empty() ? *identifier_ : message_).c_str(); }

const std::string& DeployedException::identifier() const noexcept { return *identifier_; }

}  // namespace Korvane::rtxi18nutil
