#pragma once

#include "transcoding/kernels/Cursor.hpp"

#include <memory>

namespace ku::i18n::detail {

class Encoding;

/// The fast conversion between two encodings: a kernel and the tables that it reads.
///
/// Threads  Immutable; may be used by several threads.
class Route {
public:
  /// Null if no kernel converts between the two.
  static std::unique_ptr<const Route> between(const Encoding& from, const Encoding& to);
  virtual ~Route() = default;

  /// Converts text until the first character that the kernel cannot convert, or until there is no more room.
  virtual ByteCursor convert(ByteCursor cursor) const noexcept = 0;
};

}  // namespace ku::i18n::detail
