#include <qardatainterfaces/QARPath.hpp>

#include <ku/filesystem/process_code_traits.hpp>
#include <ku/i18n/codecvt.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace Korvane::qardatainterfaces {
namespace {

using ku::filesystem::detail::process_code_traits;

constexpr char16_t escape = 0xDC00;  // of a byte

bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool isEscape(char16_t unit) noexcept { return unit > escape && unit <= escape + 0xFF; }

std::optional<std::u16string> decode(std::string_view bytes) {
  try {
    return process_code_traits::to_internal(std::string(bytes));
  } catch (const ku::i18n::CvtExceptionBase&) {
    return std::nullopt;
  }
}

// Where the text ends that begins at `from`: at an escape or at the end of the path. Pairs of surrogates are text.
std::size_t endOfText(const std::u16string& path, std::size_t from) noexcept {
  while (from < path.size() && !isEscape(path[from])) from += isHighSurrogate(path[from]) ? 2 : 1;
  return std::min(from, path.size());
}

// The bytes that a path spells, whether or not they would be read as that path.
std::string write(const std::u16string& path) {
  std::string bytes;
  for (std::size_t from = 0; from < path.size();) {
    const auto end = endOfText(path, from);
    if (from < end) bytes += process_code_traits::to_external(path.substr(from, end - from));
    for (from = end; from < path.size() && isEscape(path[from]); ++from) bytes += static_cast<char>(path[from]);
  }
  return bytes;
}

bool spells(const std::u16string& path, std::string_view bytes) {
  try {
    return write(path) == bytes;
  } catch (const ku::i18n::CvtExceptionBase&) {
    return false;
  }
}

// Decodes pieces of up to `longest` bytes, each by itself, where that gives the same bytes again, and escapes the
// others.
std::u16string decodePieces(std::string_view bytes, std::size_t longest) {
  std::u16string path;
  while (!bytes.empty()) {
    std::size_t length = 1;
    std::optional<std::u16string> text;
    for (; length <= std::min(longest, bytes.size()); ++length) {
      text = decode(bytes.substr(0, length));
      if (text && spells(*text, bytes.substr(0, length))) break;
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

}  // namespace

// Whatever is returned spells the same bytes: that is tried before, and needs no trial if all are escaped. Hence the
// way back, and that no two names have one path. Pieces that each spell their bytes may spell others together, in
// stateful process codes and in those that compose characters; shorter pieces leave less to chance.
std::u16string QARPath::fromNative(std::string_view path) {
  if (auto text = decode(path); text && spells(*text, path)) return *std::move(text);
  for (const std::size_t longest : {std::size_t{4}, std::size_t{1}})
    if (auto pieces = decodePieces(path, longest); spells(pieces, path)) return pieces;
  return decodePieces(path, 0);
}

std::string QARPath::toNative(const std::u16string& path) {
  auto bytes = write(path);
  // ASCII that is written as it stands is read as it stands.
  const auto isSame = [](char byte, char16_t unit) { return byte > 0 && unit == static_cast<char16_t>(byte); };
  if (std::equal(bytes.begin(), bytes.end(), path.begin(), path.end(), isSame)) return bytes;
  const bool isRead = bytes.find('\0') == bytes.npos && (decode(bytes) == path || fromNative(bytes) == path);
  if (!isRead) throw ku::i18n::CvtInvalidCharacter();
  return bytes;
}

}  // namespace Korvane::qardatainterfaces
