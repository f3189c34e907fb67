#include "transcoding/CodePage.hpp"

#include <map>
#include <mutex>

namespace ku::i18n::detail {

const CodePage& CodePage::of(const Encoding& encoding) {
  struct Registry {
    std::mutex mutex;
    std::map<const Encoding*, CodePage> pages;
  };
  static auto& registry = *new Registry;  // never destroyed: it may be used until the end of the program
  const std::lock_guard lock(registry.mutex);
  return registry.pages.try_emplace(&encoding, encoding).first->second;
}

}  // namespace ku::i18n::detail
