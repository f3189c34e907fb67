#pragma once

#include "texts.hpp"

#include <ku/i18n/codecvt.hpp>

#include <iconv.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// The names of the code pages to compare: the first column of pages.txt.
inline std::vector<std::string> compared_pages() {
  std::ifstream lines(ZRQAR_SOURCE_DIR "/tests/i18n/codepages/pages.txt");
  std::vector<std::string> names;
  for (std::string line; std::getline(lines, line);)
    if (!line.empty() && line[0] != '#') names.push_back(line.substr(0, line.find("  ")));
  if (names.empty()) throw std::runtime_error("no code pages in tests/i18n/codepages/pages.txt");
  return names;
}

/// The one of these that iconv lacks.
constexpr const char* lacking_in_iconv = "CP720";
/// The name that iconv uses.
inline std::string iconv_name(const std::string& name) { return name == "KZ-1048" ? "RK1048" : name; }

constexpr char16_t malformed = 0xFFFD;

/// The strict converters of the C library. Characters that they drop count as lacking.
class Iconv {
public:
  explicit Iconv(const std::string& name)
      : encoder_(iconv_open(name.c_str(), "UTF-16LE")), decoder_(iconv_open("UTF-16LE", name.c_str())) {
    if (encoder_ == failed() || decoder_ == failed()) throw std::runtime_error("iconv does not know " + name);
  }
  ~Iconv() {
    iconv_close(encoder_);
    iconv_close(decoder_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  std::optional<std::string> encode(char32_t code) { return encode(to_utf16(code)); }
  std::optional<std::string> encode(const std::u16string& text) {
    return convert<char>(encoder_, reinterpret_cast<const char*>(text.data()), text.size() * 2);
  }
  std::optional<std::u16string> decode(const std::string& bytes) {
    return convert<char16_t>(decoder_, bytes.data(), bytes.size());
  }
  /// Whether the last bytes that could not be decoded are the start of a longer sequence.
  bool waits() const { return error_ == EINVAL; }

private:
  static iconv_t failed() { return reinterpret_cast<iconv_t>(-1); }

  template <class To>
  std::optional<std::basic_string<To>> convert(iconv_t converter, const char* from, std::size_t count) {
    constexpr auto error = static_cast<std::size_t>(-1);
    if (const auto most = 8 * count + 32; result_.size() < most) result_.resize(most);
    auto* to = result_.data();
    char* start = const_cast<char*>(from);
    std::size_t room = result_.size();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    error_ = 0;
    if (iconv(converter, &start, &count, &to, &room) != 0 ||
        iconv(converter, nullptr, nullptr, &to, &room) == error) {
      error_ = errno;
      return std::nullopt;
    }
    if (room == result_.size()) return std::nullopt;
    std::basic_string<To> text((result_.size() - room) / sizeof(To), To{});
    std::memcpy(text.data(), result_.data(), text.size() * sizeof(To));
    return text;
  }

  iconv_t encoder_, decoder_;
  std::vector<char> result_;
  int error_ = 0;
};

/// The library's converters. Tolerant ones are used, since exceptions are slow.
class Ours {
public:
  explicit Ours(const std::string& name) : encoder_(name, true), decoder_(name, true) {
    mark_ = encoder_.convert(u"\xD800", 1);
    mark_code_ = decoder_.convert(mark_.data(), mark_.size());
  }
  std::optional<std::string> encode(char32_t code) {
    const auto units = to_utf16(code);
    auto bytes = encoder_.convert(units.data(), units.size());
    if (bytes == mark_ && units != mark_code_) return std::nullopt;
    return bytes;
  }
  std::optional<std::u16string> decode(const std::string& bytes) {
    auto text = decoder_.convert(bytes.data(), bytes.size());
    if (text.find(malformed) != std::u16string::npos && bytes != mark_) return std::nullopt;
    return text;
  }

  /// The substitute for a character that the page lacks.
  const std::string& substitute() const { return mark_; }

private:
  ku::i18n::codecvt_ustring_to_string encoder_;
  ku::i18n::codecvt_string_to_ustring decoder_;
  std::string mark_;
  std::u16string mark_code_;
};
