#pragma once

#include <opc/InputStream.hpp>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

/// An input stream that behaves as badly as its contract allows.
class HostileStream final : public opc::InputStream {
public:
  struct Manners {
    std::size_t most = ~0UL;         ///< bytes per read
    int idle = 0;                    ///< reads of nothing before each read of something
    bool boasts = false;             ///< claims to have placed more than was requested
    std::size_t throws_at = ~0UL;    ///< throws once, when it has delivered this many bytes
    bool throws_once_asked = false;  ///< throws once, when it is asked for the second time whether it has ended
  };

  explicit HostileStream(std::string text, Manners manners = {~0UL, 0, false, ~0UL, false})
      : text_(std::move(text)), manners_(manners) {}

  void append(const std::string& text) { text_ += text; }

  std::uint64_t read(void* to, std::uint64_t size) override {
    if (waited_++ < manners_.idle) return 0;
    waited_ = 0;
    if (at_ >= manners_.throws_at) {
      manners_.throws_at = ~0UL;
      throw std::runtime_error("the stream broke");
    }
    const auto count = text_.copy(static_cast<char*>(to), std::min(size, manners_.most), at_);
    at_ += count;
    return manners_.boasts && count == size ? ~0UL : count;
  }

  bool exhausted() override {
    if (manners_.throws_once_asked && ++asked_ == 2) throw std::runtime_error("the stream was asked once too often");
    return at_ == text_.size();
  }

private:
  std::string text_;
  Manners manners_;
  std::size_t at_ = 0;
  int waited_ = 0, asked_ = 0;
};
