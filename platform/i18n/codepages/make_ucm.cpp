// Writes .ucm files for makeconv from the code pages of this folder, and the table of their names: see README.md.

#include <unicode/ucnv.h>
#include <unicode/utf16.h>
#include <unicode/utypes.h>

#include <array>
#include <cctype>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using Text = std::u32string;
using Bytes = std::string;

constexpr std::size_t longest_code = 4;

Text to_text(const std::u16string& units) {
  Text text;
  for (std::size_t i = 0; i < units.size();) {
    UChar32 code = 0;
    U16_NEXT(units.data(), i, units.size(), code);
    text += static_cast<char32_t>(code);
  }
  return text;
}

std::u16string to_units(char32_t code) {
  if (code < 0x10000) return {static_cast<char16_t>(code)};
  return {U16_LEAD(code), U16_TRAIL(code)};
}

bool is_private_use(char32_t code) { return (code >= 0xE000 && code <= 0xF8FF) || code >= 0xF0000; }

// The character under which ICU's PC code pages have the byte of a control.
char32_t exchanged_control(char32_t code) {
  switch (code) {
    case 0x1A: return 0x1C;
    case 0x1C: return 0x7F;
    case 0x7F: return 0x1A;
    default: return code;
  }
}

// An ICU converter, strict, without fallback mappings.
class Converter {
public:
  explicit Converter(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    converter_.reset(ucnv_open(name.c_str(), &status));
    if (U_FAILURE(status)) throw std::runtime_error(name + ": ICU has no such converter");
    ucnv_setFallback(converter_.get(), false);
    ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter_.get(), stop, nullptr, nullptr, nullptr, &status);
    char16_t unit = 0;
    exchanges_controls_ = U_SUCCESS(decode("\x1A", unit)) && unit == 0x1C;
  }

  // The bytes of the character; empty if there are none.
  Bytes encode(char32_t code) {
    const auto units = to_units(exchanges_controls_ ? exchanged_control(code) : code);
    std::array<char, 16> bytes{};
    UErrorCode status = U_ZERO_ERROR;
    const auto length = ucnv_fromUChars(converter_.get(), bytes.data(), bytes.size(), units.data(),
                                        static_cast<std::int32_t>(units.size()), &status);
    return U_SUCCESS(status) ? Bytes(bytes.data(), static_cast<std::size_t>(length)) : Bytes();
  }

  // Calls `found(bytes, text)` for each code.
  template <class Found>
  void each_code(Found found, const Bytes& prefix = {}) {
    for (unsigned byte = 0; byte < 0x100; ++byte) {
      const Bytes bytes = prefix + static_cast<char>(byte);
      std::array<char16_t, 8> units{};
      UErrorCode status = U_ZERO_ERROR;
      const auto length = ucnv_toUChars(converter_.get(), units.data(), units.size(), bytes.data(),
                                        static_cast<std::int32_t>(bytes.size()), &status);
      if (status == U_TRUNCATED_CHAR_FOUND && bytes.size() < longest_code) each_code(found, bytes);
      if (U_FAILURE(status) || length == 0) continue;
      auto text = to_text({units.data(), static_cast<std::size_t>(length)});
      if (exchanges_controls_ && bytes.size() == 1 && (byte == 0x1A || byte == 0x1C || byte == 0x7F))
        text.assign(1, byte);
      found(bytes, text);
    }
  }

private:
  struct Close {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
  };

  // Used instead of ICU's stock callback, which drops default-ignorable characters.
  static void U_CALLCONV stop(const void*, UConverterFromUnicodeArgs*, const UChar*, std::int32_t, UChar32,
                              UConverterCallbackReason, UErrorCode*) {}

  UErrorCode decode(const char* byte, char16_t& unit) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUChars(converter_.get(), &unit, 1, byte, 1, &status);
    return status;
  }

  std::unique_ptr<UConverter, Close> converter_;
  bool exchanges_controls_ = false;  // rotates 1A, 1C and 7F, as ICU's PC code pages do
};

// The bytes that a page writes for each text, and the text that it reads from each code. Most texts are one
// character.
class Mappings {
public:
  void add_base(const std::string& name) {
    Converter converter(name);
    converter.each_code([this](const Bytes& code, const Text& text) {
      read_[code] = text;
      if (text.size() > 1) written_[text] = code;
    });
    for (char32_t code = 0; code < 0x110000; ++code) {
      if (U_IS_SURROGATE(code)) continue;
      if (auto bytes = converter.encode(code); !bytes.empty()) written_[{code}] = std::move(bytes);
    }
  }

  void add(const Text& text, const Bytes& code, char precision) {
    if (precision == '0' || precision == '3') {
      if (const auto old = read_.find(code); old != read_.end()) {
        const auto former = written_.find(old->second);
        if (former != written_.end() && former->second == code) written_.erase(former);
      }
      read_[code] = text;
    }
    if (precision != '3') written_[text] = code;
  }

  // Each code of two bytes is also read with `prefix` before it.
  void read_also_behind(const Bytes& prefix) {
    std::map<Bytes, Text> more;
    for (const auto& [code, text] : read_)
      if (code.size() == 2) more.emplace(prefix + code, text);
    read_.merge(more);
  }

  // Calls `found(text, code, precision)` for each mapping.
  template <class Found>
  void each(Found found) const {
    for (const auto& [text, code] : written_) {
      const auto read = read_.find(code);
      char precision = is_private_use(text.front()) ? '1' : '4';
      if (read != read_.end() && read->second == text) precision = '0';
      found(text, code, precision);
    }
    for (const auto& [code, text] : read_) {
      const auto written = written_.find(text);
      if (written == written_.end() || written->second != code) found(text, code, '3');
    }
  }

  std::size_t longest() const {
    std::size_t length = 0;
    for (const auto& [code, text] : read_) length = std::max(length, code.size());
    return length;
  }

private:
  std::map<Text, Bytes> written_;
  std::map<Bytes, Text> read_;
};

[[noreturn]] void reject(const std::string& line) { throw std::runtime_error("not understood: " + line); }

std::string spell(const Text& text) {
  std::ostringstream spelling;
  spelling << std::hex << std::uppercase << std::setfill('0');
  for (const char32_t code : text) spelling << "<U" << std::setw(4) << static_cast<unsigned>(code) << '>';
  return spelling.str();
}

std::string spell(const Bytes& bytes) {
  std::ostringstream spelling;
  spelling << std::hex << std::uppercase << std::setfill('0');
  for (const char byte : bytes) spelling << "\\x" << std::setw(2) << unsigned{static_cast<unsigned char>(byte)};
  return spelling.str();
}

char32_t to_number(const std::string& digits, const std::string& line) {
  std::size_t used = 0;
  const auto number = digits.empty() ? 0 : std::stoul(digits, &used, 16);
  if (used != digits.size() || used == 0 || number > 0x10FFFF) reject(line);
  return static_cast<char32_t>(number);
}

Text parse_text(const std::string& spelling, const std::string& line) {
  Text text;
  for (std::size_t at = 0; at < spelling.size();) {
    const auto end = spelling.find('>', at);
    if (spelling.compare(at, 2, "<U") != 0 || end == std::string::npos) reject(line);
    text += to_number(spelling.substr(at + 2, end - at - 2), line);
    at = end + 1;
  }
  if (text.empty()) reject(line);
  return text;
}

Bytes parse_bytes(const std::string& spelling, const std::string& line) {
  Bytes bytes;
  for (std::size_t at = 0; at < spelling.size(); at += 4) {
    if (spelling.compare(at, 2, "\\x") != 0 || at + 4 > spelling.size()) reject(line);
    bytes += static_cast<char>(to_number(spelling.substr(at + 2, 2), line));
  }
  if (bytes.empty() || bytes.size() > longest_code) reject(line);
  return bytes;
}

struct Page {
  std::string stem;
  std::vector<std::string> names;
  std::string base;
  std::string header;  // lines that makeconv understands
  std::map<char32_t, char32_t> respellings;
  bool is_table = false;
  Mappings mappings;

  /// The target of the names: an ICU converter, or a table of ours.
  std::string target() const { return is_table ? stem : base; }
};

// A line such as `as <U301C> <UFF5E>`: the character that an ICU converter without a table writes instead of one that
// it lacks.
void parse_respelling(Page& page, std::istringstream& words, const std::string& line) {
  std::string code, other;
  words >> code >> other;
  const auto from = parse_text(code, line), to = parse_text(other, line);
  if (from.size() != 1 || to.size() != 1 || to.front() > 0xFFFF) reject(line);
  page.respellings[from.front()] = to.front();
}

// A line of mappings: `<U0041> \x41 |0`, or `<U0041>..<U0043> \x41 |0` for consecutive characters and last bytes.
void parse_mapping(Page& page, const std::string& line) {
  std::istringstream words(line);
  std::string text, bytes, precision, rest;
  words >> text >> bytes >> precision >> rest;
  const bool known = precision == "|0" || precision == "|1" || precision == "|3" || precision == "|4";
  if (!known || (!rest.empty() && rest.front() != '#')) reject(line);
  const auto dots = text.find("..");
  auto first = parse_text(text.substr(0, dots), line);
  const auto last = dots == std::string::npos ? first : parse_text(text.substr(dots + 2), line);
  auto code = parse_bytes(bytes, line);
  const auto span = last.back() - first.back();
  if (first.size() != last.size() || static_cast<unsigned char>(code.back()) + span > 0xFF) reject(line);
  if (!page.is_table && !page.base.empty()) page.mappings.add_base(page.base);
  page.is_table = true;
  for (char32_t i = 0; i <= span; ++i) {
    page.mappings.add(first, code, precision[1]);
    ++first.back();
    ++code.back();
  }
}

void parse_line(Page& page, const std::string& line) {
  std::istringstream words(line);
  std::string word;
  words >> word;
  if (word == "name") {
    while (words >> word && word.front() != '#') page.names.push_back(word);
  } else if (word == "base") {
    words >> page.base;
  } else if (word == "as") {
    parse_respelling(page, words, line);
  } else if (word == "also-behind") {
    words >> word;
    page.mappings.read_also_behind(parse_bytes(word, line));
  } else if (word.compare(0, 2, "<U") == 0) {
    parse_mapping(page, line);
  } else if (word.front() == '<') {
    page.header += line + '\n';
  } else {
    reject(line);
  }
}

Page read_page(const std::filesystem::path& file) {
  Page page;
  page.stem = file.stem().string();
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("cannot be read");
  std::string line;
  while (std::getline(stream, line))
    if (const auto start = line.find_first_not_of(' '); start != std::string::npos && line[start] != '#')
      parse_line(page, line);
  if (page.names.empty()) throw std::runtime_error("has no names");
  if (!page.is_table && page.base.empty()) throw std::runtime_error("has neither a base nor mappings");
  return page;
}

void write_ucm(const Page& page, const std::filesystem::path& file) {
  std::ofstream stream(file);
  const bool is_single = page.mappings.longest() == 1;
  stream << "<code_set_name> \"" << page.stem << "\"\n<mb_cur_max> " << page.mappings.longest()
         << "\n<mb_cur_min> 1\n<uconv_class> \"" << (is_single ? "SBCS" : "MBCS") << "\"\n<subchar> \\x3F\n"
         << page.header << "CHARMAP\n";
  page.mappings.each([&](const Text& text, const Bytes& code, char precision) {
    stream << spell(text) << ' ' << spell(code) << " |" << precision << '\n';
  });
  stream << "END CHARMAP\n";
  if (!stream.flush()) throw std::runtime_error("cannot be written");
}

void write_names(const std::vector<Page>& pages, const std::filesystem::path& file) {
  std::ofstream stream(file);
  std::vector<std::string> known;
  for (const auto& page : pages) {
    for (const auto& name : page.names) {
      for (const auto& other : known)
        if (ucnv_compareNames(name.c_str(), other.c_str()) == 0)
          throw std::runtime_error(name + ": the name is given twice");
      known.push_back(name);
      stream << "{\"" << name << "\", \"" << page.target() << "\", " << (page.is_table ? "true" : "false") << "},\n";
    }
  }
  if (!stream.flush()) throw std::runtime_error("cannot be written");
}

void write_respellings(const std::vector<Page>& pages, const std::filesystem::path& file) {
  std::ofstream stream(file);
  stream << std::hex;
  for (const auto& page : pages)
    for (const auto& [code, other] : page.respellings)
      stream << "{\"" << page.target() << "\", 0x" << static_cast<unsigned>(code) << ", 0x"
             << static_cast<unsigned>(other) << "},\n";
  if (!stream.flush()) throw std::runtime_error("cannot be written");
}

}  // namespace

// make_ucm FOLDER PAGE...  writes a .ucm for each page that has mappings, names.inc and respellings.inc.
int main(int count, char** arguments) {
  std::string file = "arguments";
  try {
    if (count < 3) throw std::runtime_error("usage: make_ucm FOLDER PAGE...");
    const std::filesystem::path folder = arguments[1];
    std::vector<Page> pages;
    for (int i = 2; i < count; ++i) {
      file = arguments[i];
      pages.push_back(read_page(file));
      if (pages.back().is_table) write_ucm(pages.back(), folder / (pages.back().stem + ".ucm"));
    }
    file = folder / "names.inc";
    write_names(pages, file);
    file = folder / "respellings.inc";
    write_respellings(pages, file);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << file << ": " << error.what() << '\n';
    return 1;
  }
}
