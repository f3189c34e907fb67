#pragma once

#include <opc/InputStream.hpp>

#include <cstdint>

namespace qarread {

/// Standard input as a stream for the library's readers.
///
/// Errors  `ReadFailure`.
class StandardInput final : public opc::InputStream {
public:
  std::uint64_t read(void* buffer, std::uint64_t size) override;
  bool exhausted() override { return exhausted_; }

  /// The number of bytes read so far.
  std::uint64_t count() const noexcept { return count_; }

private:
  std::uint64_t count_ = 0;
  bool exhausted_ = false;
};

}  // namespace qarread
