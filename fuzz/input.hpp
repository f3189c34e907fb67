#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

/// Splits the fuzzer's input into values. After the end of the input, numbers are zero and texts are empty.
class Input {
public:
  Input(const std::uint8_t* data, std::size_t size) : bytes_(reinterpret_cast<const char*>(data), size) {}

  bool empty() const { return bytes_.empty(); }
  unsigned number() {
    if (empty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  /// One element of an array.
  template <class List>
  const auto& one_of(const List& list) {
    return list[number() % std::size(list)];
  }
  std::string text(std::size_t most = ~0UL) {
    const auto part = bytes_.substr(0, most);
    bytes_.remove_prefix(part.size());
    return std::string(part);
  }
  /// Up to `most` elements of an array, concatenated.
  template <class List>
  auto some_of(const List& list, unsigned most) {
    auto result = list[0];
    result.clear();
    for (auto count = number() % (most + 1); count > 0; --count) result += one_of(list);
    return result;
  }
  std::u16string name(std::size_t most) {
    std::u16string result;
    for (const auto length = std::min<std::size_t>(number(), most); result.size() < length && !empty();) {
      auto unit = number();
      if (unit >= 0xF0) unit = ((unit << 8) | number()) ^ 0x2800;  // U+D800 to U+DFFF, surrogates, and others
      result.push_back(static_cast<char16_t>(unit));
    }
    return result;
  }

private:
  std::string_view bytes_;
};

/// If `right` is false, prints the place and ends the program, which the fuzzer reports.
inline void require(bool right, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (right) return;
  std::fprintf(stderr, "%s:%d: not as required\n", file, line);
  __builtin_trap();
}
