#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace benchmarks {

/// The output of a conversion: new storage that is not cleared.
struct Bytes {
  std::unique_ptr<char[]> data;
  std::size_t size;
};

/// Converts through UTF-16, each stage by one call of ICU. Storage has the size of the longest possible result, which
/// saves a sizing call. Converters are made for each call. Callbacks substitute and record it.
Bytes tight_icu(const std::string& from, const std::string& to, std::string_view in);

/// Converts by `ucnv_convertEx`, with the same substitution.
Bytes convert_ex(const std::string& from, const std::string& to, std::string_view in);

/// Converts by the C library's `iconv`. Throws if it cannot convert.
Bytes iconv(const std::string& from, const std::string& to, std::string_view in);

Bytes copy(std::string_view in);

}  // namespace benchmarks
