#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

/// Takes apart what the fuzzer offers; of what is missing there is nothing, or zero.
class Input {
public:
  Input(const std::uint8_t* data, std::size_t size) : bytes_(reinterpret_cast<const char*>(data), size) {}

  bool empty() const { return at_ == bytes_.size(); }
  unsigned number() { return empty() ? 0 : static_cast<unsigned char>(bytes_[at_++]); }
  std::string text(std::size_t most = ~0UL) {
    const auto part = bytes_.substr(at_, most);
    at_ += part.size();
    return part;
  }
  std::u16string name(std::size_t most) {
    std::u16string result;
    for (const auto length = std::min<std::size_t>(number(), most); result.size() < length && !empty();) {
      const auto unit = number();
      result.push_back(
          static_cast<char16_t>(unit < 0xF0 ? unit : (unit << 8 | number()) ^ 0x2800));  // surrogates, too
    }
    return result;
  }

private:
  std::string bytes_;
  std::size_t at_ = 0;
};

/// Ends the program, for the fuzzer to see.
inline void require(bool right) {
  if (!right) __builtin_trap();
}
