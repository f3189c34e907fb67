// The two transforms against the two converters in a row, and against the C library's where the tables agree.

#include "input.hpp"
#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"

#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <optional>

#include <iconv.h>

namespace {

using namespace Korvane::qardatainterfaces;

std::string by_converters(const std::string& text, const std::string& from, const std::string& to) {
  ku::i18n::codecvt_string_to_ustring decoder(from, true);
  const auto units = decoder.convert(text.data(), text.size());
  return ku::i18n::codecvt_ustring_to_string(to, true).convert(units.data(), units.size());
}

// Nothing if it finds the text faulty.
std::optional<std::string> by_iconv(std::string text, const char* from, const char* to) {
  std::string result(4 * text.size() + 4, '\0');
  char *in = text.data(), *out = result.data();
  auto left = text.size(), room = result.size();
  const auto handle = iconv_open(to, from);
  const bool right = iconv(handle, &in, &left, &out, &room) == 0;
  iconv_close(handle);
  result.resize(result.size() - room);
  return right ? std::optional(result) : std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const struct {
    const char* name;
    bool in_glibc;
  } encodings[] = {{"UTF-8", true},        {"ISO-8859-1", true}, {"KOI8-R", true},        {"ISO-8859-5", true},
                   {"SJIS", false},        {"EUC-JP", false},    {"EUC-KR", false},       {"Big5", false},
                   {"GB18030", false},     {"GBK", false},       {"windows-1252", false}, {"CP437", false},
                   {"ISO-2022-JP", false}, {"UTF-16", false},    {"UTF-7", false},        {"IBM-037", false},
                   {"unknown", false}};
  Input input(data, size);
  const auto& [encoding, in_glibc] = encodings[input.number() % std::size(encodings)];
  std::string text;
  const auto copies = 1 + input.number() % 4 * 100;  // past the borders of the blocks
  const auto part = input.text();
  for (unsigned i = 0; i < copies; ++i) text += part;

  const ContentLocale locale(encoding);
  const auto check = [&, name = encoding, known = in_glibc](QARTransform&& transform, bool decodes) {
    const char* const from = decodes ? name : "UTF-8";
    const char* const to = decodes ? "UTF-8" : name;
    const CapturedOutput output;
    QARByteArray out;
    QARMetaData meta;
    try {
      require(transform.transform(QARByteArray(text), out, meta));
    } catch (const Korvane::rtxi18nutil::DeployedException&) {
      return require(name == std::string("unknown"));
    }
    require(std::string(out.begin(), out.end()) == by_converters(text, from, to));
    if (!known) return;
    // By UTF-16, which ends where Unicode does: the C library's UTF-8 goes on to U+1FFFFF.
    const auto units = by_iconv(text, from, "UTF-16LE");
    const auto expected = units ? by_iconv(*units, "UTF-16LE", to) : units;
    require(expected.has_value() == output.text().empty() &&
            (!expected || *expected == std::string(out.begin(), out.end())));
  };
  check(LCPToUTF8Transform(), true);
  check(UTF8ToLCPTransform(), false);
  return 0;
}
