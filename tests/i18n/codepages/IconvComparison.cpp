#include "IconvComparison.hpp"

#include "judges.hpp"
#include "texts.hpp"

#include <algorithm>
#include <atomic>
#include <optional>
#include <thread>

namespace {

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
  Comparer(IconvComparison& comparison, Iconv& iconv)
      : comparison_(comparison), iconv_(iconv), ours_(comparison.name) {}

  void run() {
    has_states_ = comparison_.name.compare(0, 8, "ISO-2022") == 0;
    reaches_all_ = iconv_.encode(0x10FFFF).has_value();
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
    const auto theirs = iconv_.encode(code);
    if (ours) count(code, *ours);
    if (has_states_ && theirs && ours_.decode(*theirs) != iconv_.decode(*theirs)) read_otherwise_.ranges.add(code);
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
      const auto theirs = iconv_.decode(bytes);
      const bool waits = !theirs && iconv_.waits();
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
  Iconv& iconv_;
  Ours ours_;
  bool has_states_ = false;
  bool reaches_all_ = false;
  List lacking_{"not written", {"U+", 4}}, other_bytes_{"written by other bytes", {"U+", 4}},
      more_{"written, and not by iconv", {"U+", 4}}, not_read_{"not read", {"", 2}},
      read_otherwise_{"read otherwise", {"", 2}}, more_read_{"read, and not by iconv", {"", 2}};
};

IconvComparison compare(const std::string& name) {
  IconvComparison comparison;
  comparison.name = name;
  try {
    Iconv iconv(iconv_name(name));
    Comparer(comparison, iconv).run();
  } catch (const std::exception& error) {
    comparison.faults.push_back(name + ": " + error.what());
  }
  return comparison;
}

}  // namespace

std::vector<IconvComparison> compare_with_iconv() {
  auto pages = compared_pages();
  pages.erase(std::remove(pages.begin(), pages.end(), lacking_in_iconv), pages.end());
  std::vector<IconvComparison> comparisons(pages.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (auto i = next++; i < comparisons.size(); i = next++) comparisons[i] = compare(pages[i]);
  };
  std::thread other(work);
  work();
  other.join();
  return comparisons;
}
