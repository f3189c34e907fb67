#include "IconvComparison.hpp"

#include "texts.hpp"

#include <ku/i18n/codecvt.hpp>

#include <gnu/libc-version.h>
#include <iconv.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <iomanip>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace {

struct Name {
  const char* name;
  const char* description;
};

// As locale names and files spell them.
constexpr Name names[] = {
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

// What iconv calls it, if otherwise.
std::string_view iconv_name(std::string_view name) { return name == "KZ-1048" ? "RK1048" : name; }

// The upper half, as Python 3.11's codec has it, which iconv has not.
constexpr std::u16string_view cp720 =
    u"\x80"
    u"\x81"
    u"éâ\x84"
    u"à\x86"
    u"çêëèïî\x8D"
    u"\x8E"
    u"\x8F"
    u"\x90"
    u"ّْô¤ـûùءآأؤ£إئا"
    u"بةتثجحخدذرزسشص«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"ضطظعغفµقكلمنهوىي≡ًٌٍَُِ≈°∙·√ⁿ²■\u00A0";

constexpr char16_t malformed = 0xFFFD;

// Somebody else's converter, strict. What it drops it does not have.
class Judge {
public:
  virtual ~Judge() = default;
  virtual std::optional<std::string> encode(char32_t code) = 0;
  virtual std::optional<std::u16string> decode(const std::string& bytes) = 0;
  // Of bytes that could not be decoded.
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

  std::optional<std::string> encode(char32_t code) override {
    const auto units = to_utf16(code);
    return convert<char>(encoder_, reinterpret_cast<const char*>(units.data()), units.size() * 2);
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
    std::array<To, 32> units;
    auto* to = reinterpret_cast<char*>(units.data());
    char* start = const_cast<char*>(from);
    std::size_t room = sizeof(units);
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    error_ = 0;
    if (iconv(converter, &start, &count, &to, &room) != 0 ||
        iconv(converter, nullptr, nullptr, &to, &room) == error) {
      error_ = errno;
      return std::nullopt;
    }
    const std::size_t size = units.size() - room / sizeof(To);
    if (size == 0) return std::nullopt;
    return std::basic_string<To>(units.data(), size);
  }

  iconv_t encoder_, decoder_;
  int error_ = 0;
};

class UpperHalf : public Judge {
public:
  explicit UpperHalf(std::u16string_view table) : table_(table) {}
  std::optional<std::string> encode(char32_t code) override {
    if (code < 0x80) return std::string(1, static_cast<char>(code));
    const auto at = code < malformed ? table_.find(static_cast<char16_t>(code)) : std::u16string_view::npos;
    if (at == std::u16string_view::npos) return std::nullopt;
    return std::string(1, static_cast<char>(0x80 + at));
  }
  std::optional<std::u16string> decode(const std::string& bytes) override {
    const auto byte = static_cast<unsigned char>(bytes.front());
    const char16_t unit = byte < 0x80 ? byte : table_[byte - 0x80];
    if (bytes.size() > 1 || unit == malformed) return std::nullopt;
    return std::u16string(1, unit);
  }
  bool waits() const override { return false; }

private:
  std::u16string_view table_;
};

// The library's converters. They are asked tolerantly: exceptions take their time.
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

private:
  ku::i18n::codecvt_ustring_to_string encoder_;
  ku::i18n::codecvt_string_to_ustring decoder_;
  std::string mark_;
  std::u16string mark_code_;
};

std::string hexadecimal(char32_t number, int width) {
  std::ostringstream text;
  text << std::hex << std::uppercase << std::setfill('0') << std::setw(width) << static_cast<std::uint32_t>(number);
  return text.str();
}

// Numbers in ascending order, as ranges.
class Ranges {
public:
  Ranges(const char* prefix, int width) : prefix_(prefix), width_(width) {}

  void add(char32_t number) {
    ++count_;
    if (!ranges_.empty() && ranges_.back().second + 1 == number)
      ranges_.back().second = number;
    else
      ranges_.emplace_back(number, number);
  }

  std::string text() const {
    constexpr std::size_t most = 12;
    std::string text = std::to_string(count_) + ":";
    for (std::size_t i = 0; i < std::min(most, ranges_.size()); ++i) {
      const auto& [first, last] = ranges_[i];
      text.append(" ").append(prefix_).append(hexadecimal(first, width_));
      if (last != first) text.append("-").append(hexadecimal(last, width_));
    }
    return ranges_.size() > most ? text + " ..." : text;
  }

  bool empty() const { return count_ == 0; }

private:
  const char* prefix_;
  int width_;
  std::size_t count_ = 0;
  std::vector<std::pair<char32_t, char32_t>> ranges_;
};

class Comparer {
public:
  Comparer(IconvComparison& comparison, Judge& judge)
      : comparison_(comparison), judge_(judge), ours_(comparison.name) {}

  void run() {
    has_states_ = comparison_.name.compare(0, 8, "ISO-2022") == 0;
    reaches_all_ = judge_.encode(0x10FFFF).has_value();
    for (char32_t code = 0; code < 0x110000; ++code)
      if ((code < 0xD800 || code > 0xDFFF) && (reaches_all_ || code < 0x30000 || code >= 0x10F000))
        compare_character(code);
    if (!has_states_) compare_codes({});
    for (auto* const list : {&lacking_, &other_bytes_, &more_, &not_read_, &read_otherwise_, &more_read_})
      if (!list->ranges.empty())
        comparison_.differences.push_back({list->what, list->ranges.text(), list != &more_ && list != &more_read_});
  }

private:
  struct List {
    const char* what;
    Ranges ranges;
  };

  void compare_character(char32_t code) {
    const auto ours = ours_.encode(code);
    const auto theirs = judge_.encode(code);
    if (ours) count(code, *ours);
    if (has_states_ && theirs && ours_.decode(*theirs) != judge_.decode(*theirs)) read_otherwise_.ranges.add(code);
    if (ours != theirs) (ours ? theirs ? other_bytes_ : more_ : lacking_).ranges.add(code);
  }

  void count(char32_t code, const std::string& bytes) {
    ++comparison_.written;
    const auto back = ours_.decode(bytes);
    const auto units = to_utf16(code);
    if (!back || back->empty())
      comparison_.faults.push_back(comparison_.name + ": U+" + hexadecimal(code, 4) + " cannot be read again");
    else if (*back != units)
      ++(are_equivalent(*back, units) ? comparison_.in_pieces : comparison_.otherwise);
  }

  void compare_codes(const std::string& prefix) {
    for (unsigned byte = 0; byte < 0x100; ++byte) {
      const auto bytes = prefix + static_cast<char>(byte);
      const auto theirs = judge_.decode(bytes);
      const bool waits = !theirs && judge_.waits();
      // Where all of Unicode has codes of up to four bytes, those that are left are tens of millions.
      if (bytes.size() == 4 && reaches_all_ && !theirs) continue;
      const auto ours = ours_.decode(bytes);
      if (ours != theirs) {
        char32_t number = 0;
        for (const char part : bytes) number = number << 8 | static_cast<unsigned char>(part);
        (ours ? theirs ? read_otherwise_ : more_read_ : not_read_).ranges.add(number);
      }
      if (bytes.size() < 4 && !ours && (waits || (bytes.size() == 1 && !theirs))) compare_codes(bytes);
    }
  }

  IconvComparison& comparison_;
  Judge& judge_;
  Ours ours_;
  bool has_states_ = false;
  bool reaches_all_ = false;
  List lacking_{"not written", {"U+", 4}}, other_bytes_{"written by other bytes", {"U+", 4}},
      more_{"written, and not by iconv", {"U+", 4}}, not_read_{"not read", {"", 2}},
      read_otherwise_{"read otherwise", {"", 2}}, more_read_{"read, and not by iconv", {"", 2}};
};

IconvComparison compare(const Name& name) {
  IconvComparison comparison;
  comparison.name = name.name;
  comparison.description = name.description;
  try {
    std::unique_ptr<Judge> judge;
    if (comparison.name == "CP720")
      judge = std::make_unique<UpperHalf>(cp720);
    else
      judge = std::make_unique<Iconv>(std::string(iconv_name(comparison.name)));
    Comparer(comparison, *judge).run();
  } catch (const std::exception& error) {
    comparison.faults.push_back(comparison.name + ": " + error.what());
  }
  return comparison;
}

}  // namespace

std::vector<IconvComparison> compare_with_iconv() {
  std::vector<IconvComparison> comparisons(std::size(names));
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (auto i = next++; i < comparisons.size(); i = next++) comparisons[i] = compare(names[i]);
  };
  std::thread other(work);
  work();
  other.join();
  return comparisons;
}

std::string versions() {
  return "Made with ICU " U_ICU_VERSION " and glibc " + std::string(gnu_get_libc_version()) +
         "; other versions have other tables.";
}

Reasons::Reasons(const std::string& page) : is_exact_(page.find('\n' + versions() + '\n') != std::string::npos) {
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    // | name | difference | which | reason |
    std::array<std::size_t, 5> bars{};
    std::size_t count = 0;
    for (auto at = line.find('|'); at != std::string::npos && count < bars.size(); at = line.find('|', at + 1))
      bars[count++] = at;
    if (count < bars.size() || bars[4] - bars[3] < 4) continue;
    const auto reason = line.substr(bars[3] + 2, bars[4] - bars[3] - 3);
    by_row_[line.substr(0, bars[3])] = reason;
    by_start_[line.substr(0, bars[2])] = reason;
  }
}

std::string Reasons::find(const IconvComparison& comparison, const IconvComparison::Difference& difference) const {
  const auto start = "| " + comparison.name + " | " + difference.what + " ";
  const auto& reasons = is_exact_ ? by_row_ : by_start_;
  const auto found = reasons.find(is_exact_ ? start + "| " + difference.which + " " : start);
  return found == reasons.end() ? "" : found->second;
}

std::string describe_pages(const std::vector<IconvComparison>& comparisons) {
  std::ostringstream text;
  text << "| name | for | characters | what iconv has | comes back |\n|---|---|---|---|---|\n";
  for (const auto& page : comparisons) {
    std::string agrees = "all";
    for (const auto& difference : page.differences)
      if (difference.is_loss)
        agrees = "see below";
      else if (agrees == "all")
        agrees = "all, and more";
    text << "| " << page.name << " | " << page.description << " | " << page.written << " | " << agrees << " | ";
    if (page.in_pieces + page.otherwise == 0) text << "all";
    if (page.in_pieces > 0) text << page.in_pieces << " in pieces";
    if (page.in_pieces > 0 && page.otherwise > 0) text << ", ";
    if (page.otherwise > 0) text << page.otherwise << " as another one";
    text << " |\n";
  }
  return text.str();
}

std::string describe_differences(const std::vector<IconvComparison>& comparisons, const Reasons& reasons,
                                 std::vector<std::string>& faults) {
  std::string text = "| name | difference | which | reason |\n|---|---|---|---|\n";
  for (const auto& page : comparisons) {
    for (const auto& difference : page.differences) {
      const auto reason = reasons.find(page, difference);
      const auto row = "| " + page.name + " | " + difference.what + " | " + difference.which + " | " + reason + " |";
      // Other versions of ICU have other characters beyond those of iconv.
      if (reason.empty() && (difference.is_loss || reasons.is_made_with_these_versions()))
        faults.push_back(row + " has no reason in docs/codepages.md");
      text += row + '\n';
    }
  }
  return text;
}
