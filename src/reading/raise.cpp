#include "raise.hpp"

#include <qardatainterfaces/DeployedException.hpp>

#include <exception>

namespace Korvane::qardatainterfaces {

void raise(const tavik_core::BaseMsgID& id, const std::error_code& why) {
  try {
    throw std::system_error(why);
  } catch (const std::system_error&) {
    std::throw_with_nested(rtxi18nutil::DeployedException(id));
  }
}

}  // namespace Korvane::qardatainterfaces
