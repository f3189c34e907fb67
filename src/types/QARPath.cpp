#include <qardatainterfaces/QARPath.hpp>

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/codecvt.hpp>
#if __has_include(<ku/filesystem/NameDecoder.hpp>)  // optional: a platform may lack it
#include <ku/filesystem/NameDecoder.hpp>
#endif

#include <algorithm>
#include <cstddef>
#include <optional>

namespace Korvane::qardatainterfaces {
namespace {

using ku::filesystem::detail::process_code_traits;

#if __has_include(<ku/filesystem/NameDecoder.hpp>)
using ku::filesystem::NameDecoder;
#else
// The same by the contract alone. Each piece that is not text costs an exception.
struct NameDecoder {
  static std::optional<std::u16string> decode(std::string_view bytes) try {
    return process_code_traits::to_internal(std::string(bytes));
  } catch (const ku::i18n::CvtExceptionBase&) {
    return std::nullopt;
  }
};
#endif

constexpr char16_t escape = 0xDC00;  // escape + byte stands for a byte that is not text

bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool isEscape(char16_t unit) noexcept { return unit > escape && unit <= escape + 0xFF; }

// The end of the text that begins at `from`: the next escape or the end of the path. Surrogate pairs are text.
std::size_t endOfText(const std::u16string& path, std::size_t from) noexcept {
  while (from < path.size() && !isEscape(path[from])) from += isHighSurrogate(path[from]) ? 2 : 1;
  return std::min(from, path.size());
}

// The bytes of a path. `QARPath::fromNative` may convert them to a different path.
std::string encode(const std::u16string& path) {
  std::string bytes;
  std::size_t at = 0;
  while (at < path.size()) {
    const auto end = endOfText(path, at);
    if (at < end) bytes += process_code_traits::to_external(path.substr(at, end - at));
    at = end;
    while (at < path.size() && isEscape(path[at])) {
      bytes += static_cast<char>(path[at]);
      ++at;
    }
  }
  return bytes;
}

// Whether the path encodes to these bytes.
bool encodesTo(const std::u16string& path, std::string_view bytes) {
  try {
    return encode(path) == bytes;
  } catch (const ku::i18n::CvtExceptionBase&) {
    return false;
  }
}

// Decodes the shortest piece of up to `longest` bytes that encodes to the same bytes again, then the next piece, and
// so on. Escapes a byte at which no such piece begins.
std::u16string decodePieces(NameDecoder& decoder, std::string_view bytes, std::size_t longest) {
  std::u16string path;
  while (!bytes.empty()) {
    std::size_t length = 1;
    std::optional<std::u16string> text;
    for (; length <= std::min(longest, bytes.size()); ++length) {
      text = decoder.decode(bytes.substr(0, length));
      if (text && encodesTo(*text, bytes.substr(0, length))) break;
      text.reset();
    }
    if (!text) {
      length = 1;
      text.emplace(1, static_cast<char16_t>(escape + static_cast<unsigned char>(bytes[0])));
    }
    path += *text;
    bytes.remove_prefix(length);
  }
  return path;
}

// Every path that is returned encodes to the same bytes: this is checked first, and holds anyway if all bytes are
// escaped. Hence `QARPath::toNative` inverts this function, and different names have different paths. In process
// codes that are stateful or compose characters, pieces that encode correctly one by one may encode differently
// together. Shorter pieces make that less likely, so there is a second attempt with them.
std::u16string decodeName(NameDecoder& decoder, std::string_view bytes) {
  if (auto text = decoder.decode(bytes); text && encodesTo(*text, bytes)) return *std::move(text);
  for (const std::size_t longest : {std::size_t{4}, std::size_t{1}})
    if (auto pieces = decodePieces(decoder, bytes, longest); encodesTo(pieces, bytes)) return pieces;
  return decodePieces(decoder, bytes, 0);
}

}  // namespace

std::u16string QARPath::fromNative(std::string_view path) {
  NameDecoder decoder;
  return decodeName(decoder, path);
}

std::string QARPath::toNative(const std::u16string& path) {
  auto bytes = encode(path);
  // ASCII that is encoded unchanged is also decoded unchanged.
  const auto isSame = [](char byte, char16_t unit) { return byte > 0 && unit == static_cast<char16_t>(byte); };
  if (std::equal(bytes.begin(), bytes.end(), path.begin(), path.end(), isSame)) return bytes;
  NameDecoder decoder;
  const bool isReversible =
      bytes.find('\0') == bytes.npos && (decoder.decode(bytes) == path || decodeName(decoder, bytes) == path);
  if (!isReversible) throw ku::i18n::CvtInvalidCharacter();
  return bytes;
}

}  // namespace Korvane::qardatainterfaces
