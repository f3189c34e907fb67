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

/// A line repeats up to `most_signs` of the signs, a word and, after one word in `separated`, the separator.
struct Script {
  std::vector<std::u16string> words;
  std::u16string separator;
  std::size_t separated;
  std::size_t most_signs = 0;
  std::u16string signs = {};
};

/// The characters of an encoding's two-byte rows from B0A1 on: its common ideographs.
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

std::vector<std::u16string> words(std::u16string_view text) {
  std::vector<std::u16string> result;
  for (auto end = text.find(u'|'); end != text.npos; end = text.find(u'|')) {
    result.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  result.emplace_back(text);
  return result;
}

const Script& script_named(const std::string& name) {
  static const std::map<std::string, Script> scripts{
      {"ascii",
       {words(
            u"const |auto |return |if (|for (|} |{ |std::size_t |count |buffer|->read(|) |;|// reads on|\"text\"|\\n"
            u"|static_cast<int>(|== |+= |0x7F|path_|size() - 1|&& |throw |Error|~Reader"),
        u"  ", 4}},
      {"western",
       {words(u"und |der |für |Größe |wird |über |Datei |geöffnet |le |fichier |n'est |pas |été |où |déjà |français "
              u"|el |año |está |también |señal |de |la |que |en |un |Straße |mit |nicht |ist |lesen |contenu |après "
              u"|même |archivo |Übung "),
        u"¿qué? ", 16}},
      {"cyrillic",
       {words(u"и |в |не |на |файл |чтение |который |размер |система |данные |если |строка |Кодировка |архив |можно "
              u"|также |будет |ошибка |ещё |открыть |содержимое |путь |для |при |через "),
        u"- ", 8}},
      {"japanese",
       {words(u"の|は|を|に|が|で|と|する|して|から|まで|できる|ファイル|データ|システム|ください|という|られる"),
        u"、", 6, 3, ideographs("EUC-JP", 0xCE)}},
      {"chinese", {words(u"的|了|是|在"), u"，", 3, 4, ideographs("GB18030", 0xD6)}},
      {"korean", {words(u" "), u", ", 8, 4, hangul()}},
      {"polish",
       {words(u"plik |czytać |został |który |rozmiar |błąd |jeśli |wiersz |można |także |będzie |otworzyć |ścieżka "
              u"|dla "
              u"|przez |i |w |nie |na |się |zawartość |źródło |kodowanie "),
        u"- ", 8}},
      {"greek",
       {words(u"και |το |στο |δεν |για |αρχείο |ανάγνωση |που |μέγεθος |σύστημα |δεδομένα |αν |γραμμή |Κωδικοποίηση "
              u"|μπορεί |επίσης |σφάλμα |άνοιγμα |περιεχόμενο |διαδρομή "),
        u"- ", 8}},
      {"hebrew",
       {words(u"של |את |לא |על |קובץ |קריאה |אשר |גודל |מערכת |נתונים |אם |שורה |קידוד |אפשר |גם |יהיה |שגיאה |לפתוח "
              u"|תוכן |נתיב |עבור "),
        u"- ", 8}},
      {"arabic",
       {words(u"من |في |لا |على |ملف |قراءة |الذي |حجم |نظام |بيانات |إذا |سطر |ترميز |يمكن |أيضا |سيكون |خطأ |فتح "
              u"|محتوى |مسار |عبر "),
        u"- ", 8}},
      {"thai",
       {words(u"และ|ใน|ไม่|ที่|แฟ้ม|อ่าน|ขนาด|ระบบ|ข้อมูล|ถ้า|บรรทัด|รหัส|ได้|ด้วย|จะ|ผิดพลาด|เปิด|เนื้อหา|เส้นทาง"), u" ", 6}},
      {"vietnamese",  // with the tone marks as characters of their own, as its code page has them
       {words(
            u"tê\u0323p |tin |đo\u0323c |không |kích |thươ\u0301c |hê\u0323 |thô\u0301ng |dư\u0303 |liê\u0323u "
            u"|nê\u0301u |do\u0300ng |ma\u0303 |ho\u0301a |co\u0301 |thê\u0309 |lô\u0303i |mơ\u0309 |nô\u0323i |dung "
            u"|đươ\u0300ng |dâ\u0303n "),
        u"- ", 8}},
      {"emoji",
       {words(u"😀|🎉|👍🏽|👩‍💻|🚀|❤️|🇩🇪|🐍|𝔘𝔫𝔦|🧪|ok|yes|日本|é"), u" ",
        3}}};
  const auto found = scripts.find(name);
  if (found == scripts.end()) throw std::runtime_error("there is no script " + name);
  return found->second;
}

std::u16string line(const Script& script, std::mt19937& random) {
  // The distributions of the standard library differ between its implementations.
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  std::u16string text;
  for (auto count = 4 + below(9); count > 0; --count) {
    // Some signs are far more frequent than others, as in any language.
    for (auto signs = below(1 + script.most_signs); signs > 0; --signs)
      text += script.signs[below(1 + below(1 + below(script.signs.size())))];
    text += script.words[below(script.words.size())];
    if (below(script.separated) == 0) text += script.separator;
  }
  text += u'\n';
  return text;
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
