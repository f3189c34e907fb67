#include "IconvComparison.hpp"

#include "judges.hpp"
#include "texts.hpp"

#include <gnu/libc-version.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <iomanip>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace {

// The upper half of CP720 from Python 3.11's codec; iconv lacks the page.
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
    if (ours != theirs) list_for(ours.has_value(), theirs.has_value(), lacking_, other_bytes_, more_).add(code);
  }

  // The list for a difference: iconv alone has a result, both have different ones, or the library alone has one.
  static Ranges& list_for(bool ours, bool theirs, List& missing, List& different, List& additional) {
    if (!ours) return missing.ranges;
    return theirs ? different.ranges : additional.ranges;
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
      // If the page has all of Unicode in up to four bytes, there are tens of millions of unused codes.
      if (bytes.size() == 4 && reaches_all_ && !theirs) continue;
      const auto ours = ours_.decode(bytes);
      if (ours != theirs) {
        char32_t number = 0;
        for (const char part : bytes) number = number << 8 | static_cast<unsigned char>(part);
        list_for(ours.has_value(), theirs.has_value(), not_read_, read_otherwise_, more_read_).add(number);
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

IconvComparison compare(const ComparedPage& page) {
  IconvComparison comparison;
  comparison.name = page.name;
  comparison.description = page.description;
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
  std::vector<IconvComparison> comparisons(std::size(compared_pages));
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (auto i = next++; i < comparisons.size(); i = next++) comparisons[i] = compare(compared_pages[i]);
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
