// Compares the transcoder with the two converters, one after the other, which do not use its tables and kernels. The
// reported losses are compared with lists in tests/transforms/losses.txt.

#include <CodePageSurvey.hpp>
#include <ku/i18n/Transcoder.hpp>
#include <ku/i18n/codecvt.hpp>
#include <texts.hpp>

#include "support/table.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace ku::i18n {
namespace {

struct Result {
  std::string bytes;
  bool lossy_input = false;
  bool lossy_output = false;
  std::string losses = {};

  bool operator==(const Result& other) const {
    return bytes == other.bytes && lossy_input == other.lossy_input && lossy_output == other.lossy_output &&
           losses == other.losses;
  }
};
void PrintTo(const Result& result, std::ostream* out) {
  *out << testing::PrintToString(result.bytes) << ' ' << result.lossy_input << result.lossy_output << ' '
       << result.losses;
}

Result by_converters(const std::string& from, const std::string& to, const std::string& text) {
  Result result;
  const auto units = codecvt_string_to_ustring(from, true).convert(text.data(), text.size());
  result.bytes = codecvt_ustring_to_string(to, true).convert(units.data(), units.size());
  const auto refuses = [](auto convert) {
    try {
      convert();
      return false;
    } catch (const CvtInvalidCharacter&) {
      return true;
    }
  };
  result.lossy_input = refuses([&] { codecvt_string_to_ustring(from, false).convert(text.data(), text.size()); });
  result.lossy_output = refuses([&] { codecvt_ustring_to_string(to, false).convert(units.data(), units.size()); });
  return result;
}

std::string described(const ConversionLoss& loss) {
  const auto what = loss.malformed ? "malformed" : "U+" + hexadecimal(loss.character);
  return std::to_string(loss.offset) + '+' + std::to_string(loss.length) + ' ' + what + "; ";
}

/// A copy of a text before an inaccessible page, so that a read past its end crashes. Valid until the next call.
const char* at_page_end(const char* text, std::size_t size) {
  constexpr std::size_t most = 1 << 26;
  static char* const end = [] {
    void* const all = mmap(nullptr, most + 0x10000, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    EXPECT_EQ(mprotect(all, most, PROT_READ | PROT_WRITE), 0);
    return static_cast<char*>(all) + most;
  }();
  EXPECT_LE(size, most);
  return std::copy_n(text, size, end - size) - size;
}

/// Converts in pieces of `slice` bytes, with room for `room` bytes. The mark after the room detects writes past it.
Result by_transcoder(const std::string& from, const std::string& to, const std::string& text, std::size_t slice,
                     std::size_t room, bool locates) {
  static const std::string mark = "the end of the room";
  Transcoder transcoder(from, to);
  Result result;
  if (locates) transcoder.report_losses([&](const ConversionLoss& loss) { result.losses += described(loss); });
  std::size_t consumed = 0, offered = std::min(slice, text.size());
  bool ends = !locates;  // if losses are located, the last piece is what the others have left, or empty
  for (int calls = 0; calls < 100000; ++calls) {
    const auto* const piece = at_page_end(text.data() + consumed, offered - consumed);
    std::vector<char> out(room);
    out.insert(out.end(), mark.begin(), mark.end());
    out.shrink_to_fit();
    const bool last = ends && offered == text.size();
    const auto step = transcoder.convert(piece, offered - consumed, last, out.data(), room);
    EXPECT_TRUE(std::equal(mark.begin(), mark.end(), out.data() + room)) << "written past the end of the room";
    result.bytes.append(out.data(), step.written);
    consumed += step.consumed;
    EXPECT_TRUE(step.done || room - step.written < Transcoder::least_room) << "stopped although there is room";
    if (!step.done) continue;
    EXPECT_LT(offered - consumed, 5U) << "only an incomplete character may remain";
    if (last) {
      EXPECT_EQ(consumed, text.size());
      result.lossy_input = transcoder.has_substituted_input();
      result.lossy_output = transcoder.has_substituted_output();
      return result;
    }
    ends = ends || offered == text.size();
    offered = std::min(text.size(), offered + slice);
  }
  ADD_FAILURE() << "no progress";
  return result;
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (; times > 0; --times) result += text;
  return result;
}

class Routes : public RowTest {
protected:
  static std::vector<std::string> fields_after(const Row& row, std::size_t first) {
    std::vector<std::string> fields;
    for (auto i = first; i < row.size(); ++i) fields.push_back(row.at(i));
    return fields;
  }

  const std::string source = row.at(0), target = row.at(1);
  const std::vector<std::string> fillings = fields_after(row, 2);
};

INSTANTIATE_TEST_SUITE_P(, Routes, testing::ValuesIn(table("tests/i18n/routes.txt")), RowTest::name);

// Kernels work on blocks: every fragment must be converted in the same way at every place in a block.
TEST_P(Routes, ConvertEveryFragmentAlikeAtEveryOffset) {
  std::vector<std::string> fragments;
  for (int byte = 0; byte < 0x100; ++byte) fragments.emplace_back(1, static_cast<char>(byte));
  for (int first = 0x80; first <= 0xFF; ++first)
    for (const int second : {0x00, 0x30, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xD8, 0xDC, 0xFF})
      for (const char* rest : {"", "\x80", "\x81\x31", "\x80\x80"})
        fragments.push_back(std::string{static_cast<char>(first), static_cast<char>(second)} + rest);
  for (const auto& filling : fillings) fragments.push_back(filling.substr(0, filling.size() - 1));  // incomplete
  std::size_t number = 0;
  for (const auto& filling : fillings)
    for (const auto& fragment : fragments) {
      const auto before = ++number * 7 % (70 / filling.size() + 1);
      const auto text = repeated(filling, before) + fragment + repeated(filling, 140 / filling.size());
      const auto expected = by_converters(source, target, text);
      ASSERT_EQ(by_transcoder(source, target, text, text.size(), 4 * text.size() + Transcoder::least_room, false),
                expected)
          << filling << " x " << before << testing::PrintToString(fragment);
      ASSERT_EQ(by_transcoder(source, target, text, 50, Transcoder::least_room + number % 64, false), expected)
          << filling << " x " << before << testing::PrintToString(fragment);
    }
}

// Each character between fillings. The tables are filled with all characters first.
TEST_P(Routes, ConvertEveryCharacterOrReportIt) {
  codecvt_ustring_to_string to_source(source, false), to_target(target, false);
  codecvt_string_to_ustring from_source(source, false);
  const auto encoded = [](auto& converter, const std::u16string& units) -> std::optional<std::string> {
    try {
      return converter.convert(units.data(), units.size());
    } catch (const CvtInvalidCharacter&) {
      return std::nullopt;
    }
  };
  const auto substitute = by_converters("UTF-8", target, "\U0001FFFF").bytes;
  std::vector<std::pair<std::string, std::string>> characters;
  std::string learnt;
  std::size_t lacking = 0;
  for (char32_t code = 1; code <= 0x10FFFF; code += code < 0x10000 ? 1 : 0xFF) {  // includes the end of each plane
    const auto bytes = encoded(to_source, to_utf16(code));
    if (!bytes) continue;
    const auto expected = encoded(to_target, from_source.convert(bytes->data(), bytes->size()));
    characters.emplace_back(*bytes, expected.value_or(substitute));
    learnt += *bytes;
    lacking += expected ? 0 : 1;
  }
  by_transcoder(source, target, learnt, learnt.size(), 4 * learnt.size(), false);
  for (const auto& filling : fillings) {
    const auto rest = repeated(filling, 100 / filling.size());
    const auto rest_expected = by_converters(source, target, rest);
    if (rest_expected.lossy_output) continue;
    std::string text, expected;
    for (const auto& [bytes, converted] : characters) {
      text += bytes + rest;
      expected += converted + rest_expected.bytes;
    }
    const auto result = by_transcoder(source, target, text, text.size(), expected.size() + 1000, true);
    EXPECT_EQ(std::count(result.losses.begin(), result.losses.end(), ';'), lacking) << filling;
    std::size_t at = 0;
    for (const auto& [bytes, converted] : characters) {
      ASSERT_EQ(result.bytes.substr(at, converted.size()), converted) << filling << testing::PrintToString(bytes);
      at += converted.size() + rest_expected.bytes.size();
    }
    ASSERT_TRUE(result.bytes == expected) << filling;
  }
}

// ASCII that ends at the end of the room or up to 9 bytes before it, followed by each filling.
TEST_P(Routes, StayWithinTheRoom) {
  for (const auto& filling : fillings)
    for (std::size_t room = Transcoder::least_room; room < Transcoder::least_room + 200; ++room)
      for (std::size_t ascii = room - 9; ascii <= room; ++ascii) {
        const auto text = std::string(ascii, 'a') + repeated(filling, 30);
        ASSERT_EQ(by_transcoder(source, target, text, text.size(), room, false), by_converters(source, target, text))
            << filling << ' ' << room << ' ' << ascii;
      }
}

using namespace std::string_literals;

class Pieces : public testing::TestWithParam<std::string> {};

// The result does not depend on how the text is divided, on the size of the room, or on whether losses are reported.
TEST_P(Pieces, DoNotMatter) {
  const auto& page = GetParam();
  const std::string units =
      "\uFEFFAbc~+&-\r\n\x1A\x1C\x7F"s + '\0' +
      " more than 16 letters of plain text \u0430\u0431\u0432\u0433\u0434\u0435\u0436\u0437\u00CA\u0304\u00CA"
      "\u0430\u00C0\u00E9\u00DF\u20AC\u0416\u0434\u3042\u30AB\u4E2D\u6587\uAC00\uD55C\u2460\U0001F600\u200B\u200D"
      "\uFFFD\uFFFF z\xED\xA0\x80\xF0\x9F.\xE4\xB8\xAD\xF4";
  const auto bytes = by_converters("UTF-8", page, units).bytes;
  const auto middle = bytes.size() / 2;
  const auto broken = bytes.substr(0, middle + 1) + "\xFF\x81 " + bytes.substr(middle) + "\x8F\xA1\x1B$";
  struct Text {
    std::string from, to, text;
  };
  for (const auto& [from, to, text] : {Text{"UTF-8", page, units}, Text{page, "UTF-8", bytes},
                                       Text{page, "UTF-8", broken}, Text{page, page, broken}}) {
    const auto expected = by_converters(from, to, text);
    ASSERT_EQ(by_transcoder(from, to, text, text.size(), 2000, false), expected);
    auto located = by_transcoder(from, to, text, text.size(), 2000, true);
    EXPECT_EQ(located.losses.empty(), !expected.lossy_input && !expected.lossy_output);
    for (std::size_t n = 1; n <= 17; ++n)
      for (const auto& [slice, room] : {std::pair(n, std::size_t{1000}), {n, Transcoder::least_room + n - 1}})
        ASSERT_EQ(by_transcoder(from, to, text, slice, room, true), located) << slice << ' ' << room;
    located.losses.clear();
    EXPECT_EQ(located, expected);
  }
  Result before;
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    const auto expected = by_converters(page, "UTF-8", bytes.substr(0, cut));
    ASSERT_EQ(by_transcoder(page, "UTF-8", bytes.substr(0, cut), 1, 64, false), expected) << cut;
    // Each byte completes a character or makes the end malformed, except shifts and the end of Base64 in UTF-7.
    const bool is_complete = cut > 0 && !before.lossy_input && !expected.lossy_input;
    if (is_complete && static_cast<unsigned char>(bytes[cut - 1]) > ' ' && page != "UTF-7") {
      EXPECT_NE(expected.bytes, before.bytes) << cut;
    }
    before = expected;
  }
}

// Every character of the page reaches the end of rooms of several sizes.
TEST_P(Pieces, StayWithinTheRoom) {
  const auto& page = GetParam();
  std::u16string units;
  for (char32_t code = 1; code < 0x10000; code += code < 0x3100 || code > 0xD7FF ? 1 : 61)
    if (code < 0xD800 || code > 0xDFFF) units += static_cast<char16_t>(code);
  const auto encoded = codecvt_ustring_to_string(page, true).convert(units.data(), units.size());
  const auto decoded = by_converters(page, "UTF-8", encoded).bytes;  // without most of what the page lacks
  for (std::size_t more = 0; more < 8; more += 3) {
    const auto room = Transcoder::least_room + more;
    EXPECT_TRUE(by_transcoder("UTF-8", page, decoded, 300, room, false).bytes ==
                by_converters("UTF-8", page, decoded).bytes);
    EXPECT_TRUE(by_transcoder(page, "UTF-8", encoded, 300, room, false).bytes == decoded);
  }
}

INSTANTIATE_TEST_SUITE_P(AllCodePages, Pieces, testing::ValuesIn(code_page_names()),
                         [](const auto& test) { return test_name(test.param); });

}  // namespace
}  // namespace ku::i18n
