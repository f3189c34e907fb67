// Texts beyond 2 GiB, too slow and too large for every run: ./dev huge, 7 GiB of memory.
#include <ku/i18n/ZrLocale.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

using namespace Korvane::qardatainterfaces;

constexpr std::size_t size = (std::size_t{1} << 31) + 12345;
constexpr std::size_t period = 1000003;  // of letters that are not ASCII

bool is_e_acute(std::size_t i) { return i % period == 0; }
std::size_t e_acutes() { return (size + period - 1) / period; }

bool check(bool right, const char* what) {
  std::cout << (right ? "right: " : "WRONG: ") << what << std::endl;
  return right;
}

bool is_latin(const unsigned char* bytes, std::size_t count) {
  if (count != size) return false;
  for (std::size_t i = 0; i < count; ++i)
    if (bytes[i] != (is_e_acute(i) ? 0xE9 : 'a')) return false;
  return true;
}

bool transforms() {
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("de_DE.ISO-8859-1"));
  QARByteArray array;
  {
    std::string content(size, 'a');
    for (std::size_t i = 0; i < size; i += period) content[i] = '\xE9';
    array = QARByteArray(content);
  }
  QARMetaData meta;
  LCPToUTF8Transform().transform(array, array, meta);
  bool right = check(array.size() == size + e_acutes(), "ISO-8859-1 to UTF-8");
  UTF8ToLCPTransform().transform(array, array, meta);
  return check(is_latin(array.begin(), array.size()), "and back") && right;
}

// One call each with more units than ICU takes.
bool converters() {
  const std::size_t count = (std::size_t{1} << 30) + 12345;
  std::u16string text(count, u'a');
  text.back() = u'\u00E9';
  const auto bytes = ku::i18n::codecvt_ustring_to_string("ISO-8859-1", false).convert(text.data(), count);
  bool right = check(bytes.size() == count && bytes.back() == '\xE9', "more than 2 GiB of UTF-16");
  text.clear();
  text.shrink_to_fit();
  const std::unique_ptr<char16_t[]> to(new char16_t[count]);
  ku::i18n::codecvt_string_to_ustring decoder("ISO-8859-1", false);
  std::size_t taken = 0, placed = 0;
  for (bool done = false; !done;) {
    const auto step =
        decoder.convert_some(bytes.data() + taken, count - taken, true, to.get() + placed, count - placed);
    taken += step.taken;
    placed += step.placed;
    done = step.done;
  }
  return check(placed == count && to[count - 1] == u'\u00E9', "and room for as much") && right;
}

}  // namespace

int main() {
  const bool right = transforms();
  return converters() && right ? EXIT_SUCCESS : EXIT_FAILURE;
}
