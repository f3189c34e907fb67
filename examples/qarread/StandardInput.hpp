#pragma once

#include <opc/InputStream.hpp>

#include <cstdint>

namespace qarread {

/// Standard input as the library's readers take it.
///
/// Errors  `ReadFailure`.
class StandardInput final : public opc::InputStream {
public:
  std::uint64_t read(void* buffer, std::uint64_t size) override;
  bool exhausted() override { return exhausted_; }

  /// The bytes that have been read.
  std::uint64_t count() const noexcept { return count_; }

private:
  std::uint64_t count_ = 0;
  bool exhausted_ = false;
};

}  // namespace qarread
