#pragma once

#include "texts.hpp"

#include <ku/i18n/codecvt.hpp>

#include <iconv.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// A code page to compare, by the name in locale names and files.
struct ComparedPage {
  const char* name;
  const char* description;
};

constexpr ComparedPage compared_pages[] = {
    {"ARMSCII-8", "Armenian"},
    {"BIG5", "traditional Chinese"},
    {"BIG5-HKSCS", "traditional Chinese, Hong Kong"},
    {"CP437", "PC, United States"},
    {"CP720", "PC, Arabic"},
    {"CP737", "PC, Greek"},
    {"CP775", "PC, Baltic"},
    {"CP850", "PC, Western"},
    {"CP852", "PC, Central European"},
    {"CP855", "PC, Cyrillic"},
    {"CP857", "PC, Turkish"},
    {"CP858", "PC, Western with the euro sign"},
    {"CP860", "PC, Portuguese"},
    {"CP861", "PC, Icelandic"},
    {"CP862", "PC, Hebrew"},
    {"CP863", "PC, Canadian French"},
    {"CP864", "PC, Arabic"},
    {"CP865", "PC, Nordic"},
    {"CP866", "PC, Russian"},
    {"CP869", "PC, Greek"},
    {"CP874", "Windows, Thai"},
    {"CP932", "Windows, Japanese"},
    {"CP936", "Windows, simplified Chinese"},
    {"CP949", "Windows, Korean"},
    {"CP950", "Windows, traditional Chinese"},
    {"CP1250", "Windows, Central European"},
    {"CP1251", "Windows, Cyrillic"},
    {"CP1252", "Windows, Western"},
    {"CP1253", "Windows, Greek"},
    {"CP1254", "Windows, Turkish"},
    {"CP1255", "Windows, Hebrew"},
    {"CP1256", "Windows, Arabic"},
    {"CP1257", "Windows, Baltic"},
    {"CP1258", "Windows, Vietnamese"},
    {"EUC-JP", "Japanese"},
    {"EUC-JP-MS", "Japanese, with Microsoft's letters"},
    {"EUC-KR", "Korean"},
    {"EUC-TW", "traditional Chinese, CNS 11643"},
    {"GB18030", "Chinese, all of Unicode"},
    {"GB2312", "simplified Chinese"},
    {"GBK", "simplified Chinese"},
    {"GEORGIAN-PS", "Georgian"},
    {"HP-ROMAN8", "HP-UX, Western"},
    {"IBM1140", "EBCDIC, United States"},
    {"ISO-2022-JP", "Japanese mail"},
    {"ISO-2022-KR", "Korean mail"},
    {"ISO-8859-1", "Western"},
    {"ISO-8859-2", "Central European"},
    {"ISO-8859-3", "Maltese, Esperanto"},
    {"ISO-8859-4", "Baltic, the old one"},
    {"ISO-8859-5", "Cyrillic"},
    {"ISO-8859-6", "Arabic"},
    {"ISO-8859-7", "Greek"},
    {"ISO-8859-8", "Hebrew"},
    {"ISO-8859-9", "Turkish"},
    {"ISO-8859-10", "Nordic"},
    {"ISO-8859-11", "Thai"},
    {"ISO-8859-13", "Baltic"},
    {"ISO-8859-14", "Celtic"},
    {"ISO-8859-15", "Western with the euro sign"},
    {"ISO-8859-16", "South-Eastern European"},
    {"JOHAB", "Korean, by letters"},
    {"KOI8-R", "Russian"},
    {"KOI8-RU", "Russian, Ukrainian, Belarusian"},
    {"KOI8-T", "Tajik"},
    {"KOI8-U", "Ukrainian"},
    {"KZ-1048", "Kazakh"},
    {"MACINTOSH", "Macintosh, Western"},
    {"PT154", "Cyrillic of Central Asia"},
    {"RK1048", "Kazakh"},
    {"SHIFT_JIS", "Japanese"},
    {"TCVN", "Vietnamese"},
    {"TIS-620", "Thai"},
    {"UHC", "Korean"},
    {"UTF-8", "everything"},
    {"VISCII", "Vietnamese"},
};

/// The name that iconv uses.
inline std::string_view iconv_name(std::string_view name) { return name == "KZ-1048" ? "RK1048" : name; }

constexpr char16_t malformed = 0xFFFD;

/// A strict converter from another library. Characters that it drops count as lacking.
class Judge {
public:
  virtual ~Judge() = default;
  virtual std::optional<std::string> encode(char32_t code) = 0;
  virtual std::optional<std::u16string> decode(const std::string& bytes) = 0;
  /// Whether the last bytes that could not be decoded are the start of a longer sequence.
  virtual bool waits() const = 0;
};

class Iconv : public Judge {
public:
  explicit Iconv(const std::string& name)
      : encoder_(iconv_open(name.c_str(), "UTF-16LE")), decoder_(iconv_open("UTF-16LE", name.c_str())) {
    if (encoder_ == failed() || decoder_ == failed()) throw std::runtime_error("iconv does not know " + name);
  }
  ~Iconv() override {
    iconv_close(encoder_);
    iconv_close(decoder_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  std::optional<std::string> encode(char32_t code) override { return encode(to_utf16(code)); }
  std::optional<std::string> encode(const std::u16string& text) {
    return convert<char>(encoder_, reinterpret_cast<const char*>(text.data()), text.size() * 2);
  }
  std::optional<std::u16string> decode(const std::string& bytes) override {
    return convert<char16_t>(decoder_, bytes.data(), bytes.size());
  }
  bool waits() const override { return error_ == EINVAL; }

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
