#include "corpora.hpp"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <array>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace benchmarks {
namespace {

/// A line is made of so many of the signs, a word and, after one word in so many, the separator; over and over.
struct Script {
  std::vector<std::u16string> words;
  std::u16string separator;
  std::size_t separated;
  std::size_t most_signs = 0;
  std::u16string signs = {};
};

/// What the two-byte rows from B0A1 of an encoding hold: its common ideographs.
std::u16string ideographs(const char* encoding, unsigned last_row) {
  std::string bytes;
  for (unsigned row = 0xB0; row <= last_row; ++row)
    for (unsigned cell = 0xA1; cell <= 0xFE; ++cell) bytes += {static_cast<char>(row), static_cast<char>(cell)};
  const icu::UnicodeString text(bytes.data(), static_cast<std::int32_t>(bytes.size()), encoding);
  return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

std::u16string hangul() {
  std::u16string syllables;
  for (char16_t syllable = 0xAC00; syllable < 0xD7A4; ++syllable) syllables += syllable;
  return syllables;
}

const Script& script_named(const std::string& name) {
  static const std::map<std::string, Script> scripts{
      {"ascii",
       {{u"const ",     u"auto ",        u"return ",
         u"if (",       u"for (",        u"} ",
         u"{ ",         u"std::size_t ", u"count ",
         u"buffer",     u"->read(",      u") ",
         u";",          u"// reads on",  u"static_cast<int>(",
         u"== ",        u"+= ",          u"0x7F",
         u"\"text\"",   u"\\n",          u"path_",
         u"size() - 1", u"&& ",          u"throw ",
         u"Error",      u"~Reader"},
        u"  ",
        4}},
      {"western",
       {{u"und ",   u"der ",     u"für ",     u"Größe ",   u"wird ",  u"über ", u"Datei ", u"geöffnet ",
         u"le ",    u"fichier ", u"n'est ",   u"pas ",     u"été ",   u"où ",   u"déjà ",  u"français ",
         u"el ",    u"año ",     u"está ",    u"también ", u"señal ", u"de ",   u"la ",    u"que ",
         u"en ",    u"un ",      u"Straße ",  u"mit ",     u"nicht ", u"ist ",  u"lesen ", u"contenu ",
         u"après ", u"même ",    u"archivo ", u"Übung "},
        u"¿qué? ",
        16}},
      {"cyrillic",
       {{u"и ",      u"в ",       u"не ",     u"на ",     u"файл ",   u"чтение ",    u"который ",
         u"размер ", u"система ", u"данные ", u"если ",   u"строка ", u"Кодировка ", u"архив ",
         u"можно ",  u"также ",   u"будет ",  u"ошибка ", u"ещё ",    u"открыть ",   u"содержимое ",
         u"путь ",   u"для ",     u"при ",    u"через "},
        u"- ",
        8}},
      {"japanese",
       {{u"の", u"は", u"を", u"に", u"が", u"で", u"と", u"する", u"して", u"から", u"まで", u"できる", u"ファイル",
         u"データ", u"システム", u"ください", u"という", u"られる", u"ではない"},
        u"、",
        6,
        3,
        ideographs("EUC-JP", 0xCE)}},
      {"chinese", {{u"的", u"了", u"是", u"在"}, u"，", 3, 4, ideographs("GB18030", 0xD6)}},
      {"korean", {{u" "}, u", ", 8, 4, hangul()}},
      {"emoji",
       {{u"😀", u"🎉", u"👍🏽", u"👩‍💻", u"🚀", u"❤️", u"🇩🇪", u"🐍", u"𝔘𝔫𝔦", u"🧪", u"ok", u"yes",
         u"日本", u"é"},
        u" ",
        3}}};
  return scripts.at(name);
}

std::u16string line(const Script& script, std::mt19937& random) {
  // The distributions of the standard library differ between its implementations.
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  std::u16string text;
  for (auto words = 4 + below(9); words > 0; --words) {
    // Some signs are far more frequent than others, as in any language.
    for (auto signs = below(1 + script.most_signs); signs > 0; --signs)
      text += script.signs[below(1 + below(1 + below(script.signs.size())))];
    text += script.words[below(script.words.size())];
    if (below(script.separated) == 0) text += script.separator;
  }
  return text += u'\n';
}

}  // namespace

std::string corpus(const std::string& script, const std::string& encoding, std::size_t size) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, void (*)(UConverter*)> encoder(ucnv_open(encoding.c_str(), &status), ucnv_close);
  ucnv_setFromUCallBack(encoder.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  std::mt19937 random;
  std::string text;
  std::array<char, 1024> bytes;
  while (true) {
    const auto units = line(script_named(script), random);
    const auto length = ucnv_fromUChars(encoder.get(), bytes.data(), bytes.size(), units.data(),
                                        static_cast<std::int32_t>(units.size()), &status);
    if (U_FAILURE(status)) throw std::runtime_error(encoding + " lacks a character of the script " + script);
    if (text.size() + static_cast<std::size_t>(length) > size) break;
    text.append(bytes.data(), static_cast<std::size_t>(length));
  }
  text.resize(size, '\n');
  return text;
}

}  // namespace benchmarks
