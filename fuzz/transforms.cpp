// Converts any text by every converter of the library, and compares with the C library's iconv.

#include "input.hpp"
#include "judges.hpp"
#include "support/CapturedOutput.hpp"
#include "support/content.hpp"

#include <ku/i18n/Transcoder.hpp>
#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARCodePageTransform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <algorithm>
#include <map>
#include <memory>

namespace {

using namespace Korvane::qardatainterfaces;
using ku::i18n::ConversionLoss;
using ku::i18n::Transcoder;

/// How the result for an encoding is checked.
enum class Judgement {
  whole,       ///< stateful: the whole text by iconv, if nothing is lost and no character differs from iconv's
  characters,  ///< the text between the losses by iconv; where iconv differs, character by character
  strict,      ///< the text between the losses by iconv
  none         ///< only by the library's other converters: iconv lacks the encoding or defines it in another way
};

struct Encoding {
  const char* name;
  Judgement judgement;
};

const std::vector<Encoding>& encodings() {
  static const auto all = [] {
    std::vector<Encoding> result{
        {"UTF-16LE", Judgement::strict}, {"UTF-16BE", Judgement::strict},    {"UTF-32LE", Judgement::strict},
        {"UTF-32BE", Judgement::strict}, {"UTF-16", Judgement::none},        {"UTF-32", Judgement::none},
        {"UTF-7", Judgement::none},      {"IBM-037", Judgement::none},       {"IBM-930", Judgement::none},
        {"IBM-33722", Judgement::none},  {"ISO-2022-JP-2", Judgement::none}, {"CESU-8", Judgement::none}};
    static const auto pages = compared_pages();
    for (const auto& name : pages) {
      const bool has_states = name.compare(0, 8, "ISO-2022") == 0;
      if (name != lacking_in_iconv)
        result.push_back({name.c_str(), has_states ? Judgement::whole : Judgement::characters});
    }
    return result;
  }();
  return all;
}

/// Created once for each key, since opening a converter is slow.
template <class Value, class... Key>
Value& kept(const Key&... key) {
  static auto& values = *new std::map<std::tuple<Key...>, Value>;
  return values.try_emplace({key...}, key...).first->second;
}

Iconv& iconv_of(const std::string& name) { return kept<Iconv>(iconv_name(name)); }

/// The result of one conversion.
struct Conversion {
  std::string text;
  std::vector<ConversionLoss> losses;
  std::uint64_t malformed() const {
    return static_cast<std::uint64_t>(
        std::count_if(losses.begin(), losses.end(), [](auto& loss) { return loss.malformed; }));
  }
};

constexpr auto is_same = [](auto& x, auto& y) {
  return x.offset == y.offset && x.length == y.length && x.character == y.character && x.malformed == y.malformed;
};

bool operator==(const Conversion& a, const Conversion& b) {
  return a.text == b.text && std::equal(a.losses.begin(), a.losses.end(), b.losses.begin(), b.losses.end(), is_same);
}

/// Converts in pieces. Each piece is in memory of exactly its size, so that a sanitizer sees reads past its end.
Conversion convert(const std::string& text, const std::string& from, const std::string& to, std::size_t piece,
                   std::size_t room) {
  Conversion result;
  Transcoder transcoder(from, to);
  transcoder.report_losses([&](const ConversionLoss& loss) { result.losses.push_back(loss); });
  const std::unique_ptr<char[]> written(new char[room]);
  std::size_t begin = 0, end = 0;
  Transcoder::Progress step{0, 0, true};
  do {
    if (step.done) end += std::min(piece, text.size() - end);
    const std::unique_ptr<char[]> offered(new char[end - begin]);
    text.copy(offered.get(), end - begin, begin);
    step = transcoder.convert(offered.get(), end - begin, end == text.size(), written.get(), room);
    require(step.consumed <= end - begin && step.written <= room);
    require(step.done || step.consumed + step.written > 0);
    begin += step.consumed;
    result.text.append(written.get(), step.written);
  } while (!step.done || end < text.size());
  require(begin == text.size());
  const auto malformed = result.malformed();
  require(transcoder.has_substituted_input() == (malformed > 0));
  require(transcoder.has_substituted_output() || malformed == result.losses.size());
  return result;
}

/// Other converters for the text between the losses of one conversion. Both return none if there is a loss.
class Others {
public:
  Others(const std::string& from, const std::string& to)
      : source_(iconv_of(from)), target_(iconv_of(to)), decoder_(kept<Ours>(from)), encoder_(kept<Ours>(to)) {}

  std::optional<std::string> by_iconv(const std::string& text) {
    if (text.empty()) return "";
    const auto units = source_.decode(text);
    return units ? target_.encode(*units) : std::nullopt;
  }

  /// Converts character by character. The test `CodePages` compares each character with iconv.
  std::optional<std::string> by_characters(const std::string& text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
      std::optional<std::u16string> units;
      for (std::size_t length = 1; !units && length <= std::min<std::size_t>(text.size() - at, 4); ++length) {
        units = decoder_.decode(text.substr(at, length));
        if (units) at += length;
      }
      if (!units) return std::nullopt;
      for (const auto code : to_codes(*units)) {
        const auto bytes = encoder_.encode(code);
        if (!bytes) return std::nullopt;
        result += *bytes;
      }
    }
    return result;
  }

  /// Whether the text between the losses, converted by `converter`, and the substitute in place of each loss are the
  /// result.
  bool agree(std::optional<std::string> (Others::*converter)(const std::string&), const std::string& text,
             const Conversion& conversion) {
    std::string result;
    std::size_t at = 0;
    for (const auto& loss : conversion.losses) {
      const auto segment = (this->*converter)(text.substr(at, loss.offset - at));
      if (!segment) return false;
      result += *segment + encoder_.substitute();
      at = loss.offset + loss.length;
    }
    const auto last = (this->*converter)(text.substr(at));
    return last && result + *last == conversion.text;
  }

private:
  Iconv &source_, &target_;
  Ours &decoder_, &encoder_;
};

/// Whether iconv and the library convert this character differently.
bool differs_from_iconv(char32_t code, const std::string& page) {
  const auto theirs = iconv_of(page).encode(code);
  auto& ours = kept<Ours>(page);
  return ours.encode(code) != theirs || (theirs && ours.decode(*theirs) != iconv_of(page).decode(*theirs));
}

/// Checks that each loss is also a loss for iconv or the converters, and that they convert all other text in the same
/// way.
void judge(const std::string& text, const Conversion& conversion, const std::string& from, const std::string& to,
           Judgement judgement) {
  std::size_t at = 0;
  for (const auto& loss : conversion.losses) {
    require(loss.offset >= at && loss.length > 0 && loss.offset + loss.length <= text.size());
    require(!loss.malformed || loss.character == malformed);
    at = judgement == Judgement::none ? loss.offset : loss.offset + loss.length;  // characters of UTF-7 share bytes
  }
  if (judgement == Judgement::none) return;
  Others others(from, to);
  if (judgement == Judgement::whole) {
    if (text.empty() || !conversion.losses.empty() || others.agree(&Others::by_iconv, text, conversion)) return;
    const auto codes = to_codes(iconv_of("UTF-8").decode(from == "UTF-8" ? text : conversion.text).value_or(u""));
    const auto& page = from == "UTF-8" ? to : from;
    require(std::any_of(codes.begin(), codes.end(), [&](char32_t code) { return differs_from_iconv(code, page); }));
    return;
  }
  for (const auto& loss : conversion.losses) {
    const auto lost = text.substr(loss.offset, loss.length);
    require(!(judgement == Judgement::strict ? others.by_iconv(lost) : others.by_characters(lost)));
  }
  require(others.agree(&Others::by_iconv, text, conversion) ||
          (judgement == Judgement::characters && others.agree(&Others::by_characters, text, conversion)));
}

/// Compares with the library's two converters, which convert through UTF-16.
void check_converters(const std::string& text, const Conversion& whole, const std::string& from,
                      const std::string& to) {
  const auto units = kept<ku::i18n::codecvt_string_to_ustring>(from, true).convert(text.data(), text.size());
  require(kept<ku::i18n::codecvt_ustring_to_string>(to, true).convert(units.data(), units.size()) == whole.text);
}

class Recorder : public QARCodePageTransform {
public:
  Recorder(const std::string& from, const std::string& to, OnLoss on_loss)
      : QARCodePageTransform("recorder", from, to, on_loss) {}
  QARConversionLoss loss;

protected:
  void lost(const QARConversionLoss& all, QARMetaData&) override { loss = all; }
};

void check_code_page_transform(const std::string& text, const Conversion& whole, const std::string& from,
                               const std::string& to, QARCodePageTransform::OnLoss on_loss) {
  auto& transform = kept<Recorder>(from, to, on_loss);
  transform.loss = {};
  QARByteArray out(std::string("before"));
  QARMetaData meta;
  const bool is_right = whole.losses.empty() || on_loss == QARCodePageTransform::OnLoss::substitute;
  require(transform.transform(QARByteArray(text), out, meta) == is_right);
  require(Korvane::qardatainterfaces::text(out) == (is_right ? whole.text : "before"));
  const auto& [malformed, unmappable, places] = transform.loss;
  require(malformed == whole.malformed() && malformed + unmappable == whole.losses.size());
  require(places.size() == std::min(whole.losses.size(), QARConversionLoss::most_places));
  require(std::equal(places.begin(), places.end(), whole.losses.begin(), is_same));
}

void check_local_transform(const std::string& text, const Conversion& whole, const std::string& code_page,
                           bool decodes) {
  static LCPToUTF8Transform to_utf8;
  static UTF8ToLCPTransform from_utf8;
  ku::i18n::ZrLocale::global(kept<ku::i18n::ZrLocale>("en_US." + code_page));
  const CapturedOutput output;
  QARByteArray out;
  QARMetaData meta;
  QARTransform& transform = decodes ? static_cast<QARTransform&>(to_utf8) : from_utf8;
  require(transform.transform(QARByteArray(text), out, meta));
  require(Korvane::qardatainterfaces::text(out) == whole.text && output.text().empty() == whole.losses.empty());
}

/// Any name is either known to all of the library's interfaces, or refused by all of them.
void check_name(const std::string& name) {
  if (name.empty()) return;  // the local code page
  const auto is_refused = [](auto&& task) {
    try {
      task();
      return false;
    } catch (const ku::i18n::CvtExceptionBase& e) {
      require(*e.what() != '\0');
      return true;
    } catch (const Korvane::rtxi18nutil::DeployedException&) {
      return true;
    }
  };
  const bool refused = is_refused([&] { ku::i18n::codecvt_string_to_ustring(name, true); });
  require(refused == is_refused([&] { Transcoder(name, name); }));
  require(refused == is_refused([&] { Recorder(name, "UTF-8", QARCodePageTransform::OnLoss::fail); }));
  if (name.find_first_of(std::string_view("@\0", 2)) != name.npos) return;  // not possible in the name of a locale
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("en_US." + name));
  require(refused == is_refused([&] {
            const CapturedOutput output;
            QARByteArray out;
            QARMetaData meta;
            LCPToUTF8Transform().transform(QARByteArray(std::string("a")), out, meta);
          }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const auto choices = input.number();
  if (choices == 255) {
    check_name(input.text(40));
    return 0;
  }
  const auto& encoding = encodings()[choices % encodings().size()];
  const auto choice = input.number();
  const bool decodes = choice % 2 == 1;
  // The text before the part varies its position relative to the blocks that are converted at once.
  std::string text(input.number(), 'a');
  const auto copies = 1 + input.number() % 8;
  const auto& other = input.one_of(encodings());
  const std::size_t piece = 1 + input.number(), room = Transcoder::least_room + input.number();
  const auto part = input.text();
  for (unsigned i = 0; i < copies; ++i) text += part;

  const std::string name = encoding.name, from = decodes ? name : "UTF-8", to = decodes ? "UTF-8" : name;
  const auto whole = convert(text, from, to, text.size(), 8192);
  judge(text, whole, from, to, encoding.judgement);
  using OnLoss = QARCodePageTransform::OnLoss;
  switch (choice / 2 % 6) {
    case 0: require(convert(text, from, to, piece, room) == whole); break;
    case 1: check_code_page_transform(text, whole, from, to, OnLoss::substitute); break;
    case 2: check_code_page_transform(text, whole, from, to, OnLoss::fail); break;
    case 3: check_local_transform(text, whole, name, decodes); break;
    case 4: check_converters(text, whole, from, to); break;
    default: check_converters(text, convert(text, name, other.name, piece, room), name, other.name);
  }
  return 0;
}
