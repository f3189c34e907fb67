#pragma once

#include "../Notices.hpp"

#include <functional>
#include <string>

namespace packing {

/// Tells what is worth to know about an entry.
using Remark = std::function<void(const std::string& name, const std::string& text)>;

/// Does `work`; what the library prints meanwhile becomes remarks about `name`.
template <class Work>
void withRemarks(const Remark& remark, const std::string& name, Work work) {
  qarread::Notices notices;
  work();
  auto lines = notices.take();
  for (std::string line; std::getline(lines, line);) remark(name, line);
}

}  // namespace packing
