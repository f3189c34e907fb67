#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace benchmarks {

/// What a conversion gives: fresh storage that nobody has cleared.
struct Bytes {
  std::unique_ptr<char[]> data;
  std::size_t size;
};

/// Through UTF-16, each stage by ICU in one piece: storage by the longest possible result instead of a sizing call,
/// converters made for the call, substitution with its notice by callbacks.
Bytes tight_icu(const std::string& from, const std::string& to, std::string_view in);

/// By ICU's own way from one encoding to another, substitution as above.
Bytes convert_ex(const std::string& from, const std::string& to, std::string_view in);

/// By the C library. Throws where it cannot convert.
Bytes iconv(const std::string& from, const std::string& to, std::string_view in);

Bytes copy(std::string_view in);

}  // namespace benchmarks
