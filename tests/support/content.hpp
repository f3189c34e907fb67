#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <string>
#include <vector>

namespace Korvane::qardatainterfaces {

constexpr auto refused = "(failed)";

inline std::string text(const QARByteArray& array) {
  return {reinterpret_cast<const char*>(array.begin()), array.size()};
}

/// Text in which each place tells where it is.
inline std::string pattern(std::size_t size) {
  std::string result(size, '\0');
  for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char>(i % 251 + i / 65536);
  return result;
}

/// One chunk read into room for no byte more; `refused` if it fails.
template <class... Meta>
std::string chunk(QARFileReader& reader, unsigned int size, Meta&... meta) {
  std::vector<char> buffer(size);
  const unsigned int count = reader.read(buffer.data(), size, meta...);
  return count == QARFileReader::failed ? refused : std::string(buffer.data(), count);
}

}  // namespace Korvane::qardatainterfaces
