#include "CodePageSurvey.hpp"

#include "texts.hpp"

#include <ku/i18n/Transcoder.hpp>
#include <ku/i18n/codecvt.hpp>

#include <unicode/ucnv.h>
#include <algorithm>
#include <array>
#include <atomic>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <thread>

namespace {

using Decoder = ku::i18n::codecvt_string_to_ustring;
using Encoder = ku::i18n::codecvt_ustring_to_string;

constexpr char32_t block_size = 0x100;

std::string dump(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) text += hexadecimal(static_cast<unsigned char>(byte), 2);
  return text;
}

class Surveyor {
public:
  Surveyor(CodePageSurvey& survey, SurveyDepth depth)
      : survey_(survey), thinned_(depth == SurveyDepth::thinned), name_(survey.aliases.front()) {}

  void run() {
    // Every table lacks unpaired surrogates; the few encodings that have them need no substitute.
    const auto marked = decode(strict_decoder_, tolerant(dirty_encoder_, u"\xD800"));
    substitute_ = marked && marked->size() == 1 ? marked->front() : 0;
    if (substitute_ != 0xFFFD && substitute_ != '?' && substitute_ != 0xFF1F && substitute_ != 0xD800)
      fault("no visible substitute");
    for (char32_t first = 0; first < 0x110000; first += block_size)
      if (wanted(first / block_size)) survey_block(first);
    survey_ascii();
    survey_bytes();
  }

private:
  bool wanted(std::size_t number) const { return !thinned_ || number % 16 == 0 || number == 0xD8; }
  void fault(const std::string& what) { survey_.faults.push_back(survey_.name + ": " + what); }

  static std::optional<std::u16string> decode(Decoder& decoder, const std::string& bytes) {
    try {
      return decoder.convert(bytes.data(), bytes.size());
    } catch (const ku::i18n::CvtInvalidCharacter&) {
      return std::nullopt;
    }
  }
  static std::optional<std::string> encode(Encoder& encoder, const std::u16string& text) {
    try {
      return encoder.convert(text.data(), text.size());
    } catch (const ku::i18n::CvtInvalidCharacter&) {
      return std::nullopt;
    }
  }
  static std::string tolerant(Encoder& encoder, const std::u16string& text) {
    return encoder.convert(text.data(), text.size());
  }

  // Most blocks are checked at once: decoding the bytes of the whole block gives, for each character, the same
  // character or the substitute.
  void survey_block(char32_t first) {
    std::u16string text;
    for (char32_t code = first; code < first + block_size; ++code) text += to_utf16(code);
    const auto back = decode(strict_decoder_, tolerant(dirty_encoder_, text));
    const auto codes = to_codes(back.value_or(u""));
    std::u16string accepted;
    std::vector<char32_t> rejected;
    for (std::size_t i = 0; i < codes.size() && i < block_size; ++i) {
      const auto code = first + static_cast<char32_t>(i);
      if (codes[i] == code)
        accepted += to_utf16(code);
      else if (codes[i] == substitute_)
        rejected.push_back(code);
    }
    survey_.checks += block_size;
    if (codes.size() != block_size || to_codes(accepted).size() + rejected.size() != block_size ||
        !comes_back(accepted)) {
      for (char32_t code = first; code < first + block_size; ++code) survey_code(code);
      return;
    }
    survey_.kept += block_size - rejected.size();
    survey_.rejected += rejected.size();
    // Exceptions are slow, so only a few codes of a block without any character are checked.
    const std::size_t step = rejected.size() == block_size ? 251 : 1;
    for (std::size_t i = (first / block_size) % step; i < rejected.size(); i += step)
      if (encode(strict_encoder_, to_utf16(rejected[i])))
        fault("U+" + hexadecimal(rejected[i]) + " is taken strictly, but not tolerantly");
  }

  bool comes_back(const std::u16string& text) {
    const auto bytes = encode(strict_encoder_, text);
    return bytes && tolerant(clean_encoder_, text) == *bytes && decode(strict_decoder_, *bytes) == text;
  }

  void survey_code(char32_t code) {
    const auto character = to_utf16(code);
    const auto bytes = encode(strict_encoder_, character);
    if (!bytes) {
      ++survey_.rejected;
      if (tolerant(dirty_encoder_, character) != tolerant(clean_encoder_, to_utf16(substitute_)))
        fault("U+" + hexadecimal(code) + " is not replaced by one substitute");
      return;
    }
    if (tolerant(clean_encoder_, character) != *bytes)
      fault("U+" + hexadecimal(code) + " is written differently by the tolerant converter");
    const auto back = decode(strict_decoder_, *bytes);
    if (bytes->empty() || (back && back->empty()))
      fault("U+" + hexadecimal(code) + " is dropped");
    else if (back == character)
      ++survey_.kept;
    else if (back && back->size() > 1 && are_equivalent(*back, character))
      ++survey_.in_pieces;
    else
      survey_.not_read.push_back(code);
  }

  void survey_ascii() {
    const auto mark = to_utf16(substitute_ == 0xD800 ? U'A' : substitute_);
    survey_.states = tolerant(clean_encoder_, mark + mark).size() != 2 * tolerant(clean_encoder_, mark).size();
    bool printable = true;
    std::string moved;
    for (char byte = 0x7F; byte >= 0; --byte) {
      const auto text = decode(strict_decoder_, {byte});
      if (text == std::u16string{static_cast<char16_t>(byte)}) continue;
      survey_.ascii = false;
      if (byte >= 0x20 && byte < 0x7F) printable = false;
      if (text && text->size() == 1 && (text->front() < 0x20 || text->front() == 0x7F)) moved += byte;
    }
    if (printable && !moved.empty()) fault("exchanges the controls " + dump(moved));
  }

  // Checks all sequences of one and two bytes. Samples longer ones from the prefixes that need more bytes.
  void survey_bytes() {
    std::vector<std::string> prefixes{""};
    for (std::size_t length = 1; length <= 4; ++length) {
      const std::size_t all = prefixes.size() * 256;
      const std::size_t step = sample_step(length, all);
      std::vector<std::string> open;
      for (std::size_t i = 0; i < all; i += step) {
        auto bytes = prefixes[i / 256] + static_cast<char>(i % 256);
        survey_sequence(bytes);
        if (length == 1 || waits(bytes)) open.push_back(std::move(bytes));
      }
      prefixes = std::move(open);
    }
    judge_spellings();
  }

  // The step between the checked sequences among `all` of this length. It is odd, so that all last bytes occur.
  std::size_t sample_step(std::size_t length, std::size_t all) const {
    constexpr std::size_t most = 1 << 15;
    std::size_t step = 1;
    if (length > 2) step = (all + most - 1) / most;
    if (length > 1 && thinned_) step *= 16;
    return step % 2 == 0 ? step + 1 : step;
  }

  bool waits(const std::string& bytes) {
    std::array<char, ku::i18n::Transcoder::least_room> text;
    ku::i18n::Transcoder transcoder(name_, "UTF-8");
    return transcoder.convert(bytes.data(), bytes.size(), false, text.data(), text.size()).written == 0;
  }

  void survey_sequence(const std::string& bytes) {
    ++survey_.checks;
    // Exceptions are slow, so most sequences that the tolerant converter marks as malformed are skipped.
    const auto tolerated = dirty_decoder_.convert(bytes.data(), bytes.size());
    const bool marked = tolerated.find(u'\xFFFD') != std::u16string::npos;
    if (marked && bytes.size() > 1 && substitute_ != 0xFFFD && ++skipped_ % 64 != 0) return;
    const auto text = decode(strict_decoder_, bytes);
    const bool is_consistent =
        text ? tolerated == *text && clean_decoder_.convert(bytes.data(), bytes.size()) == *text : marked;
    if (!is_consistent) fault(dump(bytes) + " is read differently by the strict and the tolerant converter");
    if (!text) return;
    if (text->empty()) {
      survey_.states = true;
      return;
    }
    const auto again = encode(strict_encoder_, *text);
    if (again == bytes) return;
    const bool same_text = again && decode(strict_decoder_, *again) == text;
    (same_text ? respelled_ : changed_).emplace(to_codes(*text), bytes);
  }

  // In a stateful encoding a text has several byte sequences, and another one is not a loss.
  void judge_spellings() {
    std::set<char32_t> one_way;
    if (!survey_.states) changed_.merge(respelled_);
    for (const auto& [codes, bytes] : changed_)
      if (codes.size() == 1) one_way.insert(codes.front());
    survey_.not_rewritten.assign(one_way.begin(), one_way.end());
    one_way.insert(survey_.not_read.begin(), survey_.not_read.end());
    for (const auto& [codes, bytes] : changed_)
      if (std::none_of(codes.begin(), codes.end(), [&](char32_t code) { return one_way.count(code) > 0; }))
        fault(dump(bytes) + " does not come back, though each of its characters does");
  }

  CodePageSurvey& survey_;
  bool thinned_;
  std::size_t skipped_ = 0;
  std::string name_;
  char32_t substitute_ = 0;
  std::map<std::u32string, std::string> changed_, respelled_;
  Decoder strict_decoder_{name_, false};
  Encoder strict_encoder_{name_, false};
  Decoder clean_decoder_{name_, true}, dirty_decoder_{name_, true};
  Encoder clean_encoder_{name_, true}, dirty_encoder_{name_, true};
};

struct OwnName {
  const char* name;
  const char* page;
  bool is_own_page;
};

constexpr OwnName own_names[] = {
#include "names.inc"
};

// Whether the library uses the name for another page than ICU does.
bool is_taken(const std::string& alias, const std::string& page) {
  for (const auto& own : own_names)
    if (ucnv_compareNames(own.name, alias.c_str()) == 0) return own.is_own_page || own.page != page;
  const bool has_number = alias.size() > 2 && ucnv_compareNames(alias.substr(0, 2).c_str(), "cp") == 0 &&
                          alias.find_first_not_of("0123456789", 2) == std::string::npos;
  UErrorCode status = U_ZERO_ERROR;
  const char* const windows =
      has_number ? ucnv_getAlias(std::string("windows-").append(alias, 2).c_str(), 0, &status) : nullptr;
  return windows != nullptr && windows != page;
}

// The names of the page; the first one opens it. Names with options are left out.
std::vector<std::string> aliases_of(const std::string& page) {
  std::vector<std::string> aliases;
  for (const auto& own : own_names)
    if (own.page == page) aliases.emplace_back(own.name);
  UErrorCode status = U_ZERO_ERROR;
  const auto count = ucnv_countAliases(page.c_str(), &status);
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::string alias = ucnv_getAlias(page.c_str(), i, &status);
    // A name that several pages share opens only one of them.
    UErrorCode shared = U_ZERO_ERROR;
    if (alias.find(',') == std::string::npos && ucnv_getAlias(alias.c_str(), 0, &shared) == page &&
        !is_taken(alias, page) && std::find(aliases.begin(), aliases.end(), alias) == aliases.end())
      aliases.push_back(alias);
  }
  if (aliases.empty()) aliases.push_back(page);
  return aliases;
}

// The names of ICU's tables and of the library's.
std::vector<std::string> all_pages() {
  const auto count = ucnv_countAvailable();
  std::vector<std::string> pages;
  pages.reserve(static_cast<std::size_t>(count) + std::size(own_names));
  for (std::int32_t i = 0; i < count; ++i) pages.emplace_back(ucnv_getAvailableName(i));
  for (const auto& own : own_names)
    if (own.is_own_page && (pages.empty() || pages.back() != own.page)) pages.emplace_back(own.page);
  return pages;
}

CodePageSurvey survey_code_page(const std::string& name, SurveyDepth depth) {
  CodePageSurvey survey;
  survey.name = name;
  survey.aliases = aliases_of(name);
  try {
    Surveyor(survey, depth).run();
  } catch (const ku::i18n::CvtInvalidCharacter&) {
    survey.faults.push_back(survey.name + ": is refused as an invalid character");
  } catch (const ku::i18n::CvtExceptionBase&) {
    survey.refused = true;
  }
  return survey;
}

bool is_refused(const std::string& name) {
  try {
    const Encoder refused_or_not{name, false};
    return false;
  } catch (const ku::i18n::CvtExceptionBase&) {
    return true;
  }
}

}  // namespace

std::vector<std::string> code_page_names() {
  std::vector<std::string> names;
  for (const auto& page : all_pages()) {
    names.push_back(aliases_of(page).front());
    if (is_refused(names.back())) names.pop_back();
  }
  return names;
}

std::vector<CodePageSurvey> survey_code_pages(SurveyDepth depth) {
  const auto pages = all_pages();
  std::vector<CodePageSurvey> surveys(pages.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (auto i = next++; i < pages.size(); i = next++) surveys[i] = survey_code_page(pages[i], depth);
  };
  std::thread other(work);
  work();
  other.join();
  return surveys;
}
