#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <cstring>
#include <exception>
#include <string>
#include <system_error>
#include <vector>

namespace Korvane::qardatainterfaces {

constexpr auto refused = "(failed)";

inline std::string text(const QARByteArray& array) {
  return {reinterpret_cast<const char*>(array.begin()), array.size()};
}

/// Text without repetitions, so that misplaced bytes are detected.
inline std::string pattern(std::size_t size) {
  std::string result(size, '\0');
  for (std::size_t i = 0; i < size; ++i) result[i] = static_cast<char>(i % 251 + i / 65536);
  return result;
}

/// One chunk, read into a buffer of exactly its size; `refused` if the read fails.
template <class... Meta>
std::string chunk(QARFileReader& reader, unsigned int size, Meta&... meta) {
  std::vector<char> buffer(size);
  const unsigned int count = reader.read(buffer.data(), size, meta...);
  return count == QARFileReader::failed ? refused : std::string(buffer.data(), count);
}

/// The values of `lastError()` and `ready()` by their names in `QARFileReader`, each after a comma; nothing for 0.
inline std::string statuses(QARFileReader& reader) {
  const auto named = [](const char* what, int status) {
    switch (status) {
      case 0: return std::string();
      case QARFileReader::not_open: return std::string(", not_open");
      case QARFileReader::not_good: return std::string(", not_good");
      case QARFileReader::transform_failed: return std::string(", transform_failed");
      case QARFileReader::zero_length: return std::string(", zero_length");
      default: return std::string(", ") + what + ' ' + std::to_string(status);
    }
  };
  return named("lastError()", reader.lastError()) + named("ready()", reader.ready());
}

/// The name of the system's error, after a comma; nothing if there is none.
inline std::string reason(const std::error_code& error) {
  if (!error) return "";
  return error.category() == std::system_category() ? std::string(", ") + ::strerrorname_np(error.value())
                                                    : ", not of the system";
}
/// The same for the error that is nested in the exception.
inline std::string reason(const std::exception& exception) try {
  std::rethrow_if_nested(exception);
  return "";
} catch (const std::system_error& error) {
  return reason(error.code());
}

}  // namespace Korvane::qardatainterfaces
