#include "Report.hpp"
#include "TemporaryFile.hpp"
#include "corpora.hpp"
#include "measures.hpp"
#include "peers.hpp"

#include <ku/i18n/ZrLocale.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace benchmarks {
namespace {

using namespace Korvane::qardatainterfaces;

enum class Way : bool { to_utf8, from_utf8 };

struct Text {
  std::string name;
  std::string encoding;
  std::string script;
  double to_utf8 = 0;    // goal for the speed at 1 MiB relative to ICU
  double from_utf8 = 0;  // the same, from UTF-8
};
const Text ascii{"ASCII", "ISO-8859-1", "ascii", 12, 8};
const Text latin1{"ISO-8859-1", "ISO-8859-1", "western", 4.5, 1.5};
const Text windows1252{"windows-1252", "windows-1252", "western", 4.5, 1.5};
const Text koi8r{"KOI8-R", "KOI8-R", "cyrillic", 5, 2.3};
const Text shift_jis{"Shift_JIS", "Shift_JIS", "japanese", 3.4, 1.3};
const Text euc_jp{"EUC-JP", "EUC-JP", "japanese", 3.4, 4};
const Text gb18030{"GB18030", "GB18030", "chinese", 3.4, 4};

/// Content to convert, and the encodings.
struct Work {
  std::string from;
  std::string to;
  QARByteArray content;

  std::string_view input() const { return {reinterpret_cast<const char*>(content.begin()), content.size()}; }

  /// Returns the number of bytes of the output.
  std::size_t convert(std::string* result) const {
    QARByteArray out;
    QARMetaData meta;
    if (to == "UTF-8")
      LCPToUTF8Transform().transform(content, out, meta);
    else
      UTF8ToLCPTransform().transform(content, out, meta);
    if (result != nullptr) result->append(out.begin(), out.end());
    return out.size();
  }
};
using SharedWork = std::shared_ptr<const Work>;

/// Prepares a row just before it runs, with its own local code page.
SharedWork prepared(Way way, const std::string& encoding, const std::string& content) {
  ku::i18n::ZrLocale::global(ku::i18n::ZrLocale("en." + encoding));
  if (way == Way::to_utf8) return std::make_shared<const Work>(Work{encoding, "UTF-8", content});
  return std::make_shared<const Work>(Work{"UTF-8", encoding, content});
}

SharedWork prepared(Way way, const Text& text, std::size_t size) {
  return prepared(way, text.encoding, corpus(text.script, way == Way::to_utf8 ? text.encoding : "UTF-8", size));
}

Contestant ours(const SharedWork& work) {
  return {"ours", [work](std::string* result) { work->convert(result); }};
}

using Conversion = Bytes (*)(const std::string& from, const std::string& to, std::string_view in);

Contestant peer(const char* name, const SharedWork& work, Conversion convert, double speed_at_least) {
  const auto run = [work, convert](std::string* result) {
    const auto out = convert(work->from, work->to, work->input());
    if (result != nullptr) result->append(out.data.get(), out.size);
  };
  return {name, run, {.speed_at_least = speed_at_least}};
}

Contest against_icu(const SharedWork& work, double goal) {
  return {work->content.size(), {ours(work), peer("tight ICU", work, tight_icu, goal)}};
}

Contest against_all(const SharedWork& work, const Text& text) {
  const auto icu = work->to == "UTF-8" ? peer("tight ICU", work, tight_icu, text.to_utf8)
                                       : peer("ucnv_convertEx", work, convert_ex, text.from_utf8);
  return {work->content.size(), {ours(work), icu, peer("iconv", work, iconv, 0)}};
}

/// A lower bound: copying the input to new storage. Its bytes differ, so its result is compared with ICU's.
Contest against_copying(const SharedWork& work, Goal goal) {
  const auto convert = peer("", work, tight_icu, 0).run;
  const auto copying = [=](std::string* result) {
    if (result != nullptr) return convert(result);
    copy(work->input());
  };
  return {work->content.size(), {ours(work), {"copying", copying, goal}}};
}

/// Converts two contents by two threads, compared with one thread. They are so large that their storage comes
/// directly from the system, so no thread reuses pages.
Contest in_parallel() {
  const auto work = prepared(Way::to_utf8, koi8r, 32 * MiB);
  const auto in_threads = [work](bool both, std::string* result) {
    std::string one, other;
    const auto convert = [&](std::string& to) { work->convert(result == nullptr ? nullptr : &to); };
    std::thread thread([&] {
      convert(one);
      if (!both) convert(other);
    });
    if (both) convert(other);
    thread.join();
    if (result != nullptr) *result = one + other;
  };
  const auto two = [=](std::string* result) { in_threads(true, result); };
  const auto one = [=](std::string* result) { in_threads(false, result); };
  return {2 * work->content.size(), {{"two threads", two}, {"one thread", one, {.speed_at_least = 1.85}}}};
}

/// The peak memory while 64 MiB are converted, without input and output, as a fraction of the input.
double memory_beyond(Way way, const Text& text) {
  const auto work = prepared(way, text, 64 * MiB);
  std::size_t output = 0;
  const auto peak = peak_memory_of([&] { output = work->convert(nullptr); });
  return std::max(0.0, static_cast<double>(peak) - static_cast<double>(output)) / (64 * MiB);
}

void run_common_texts(Report& report) {
  for (const auto& text : {ascii, latin1, windows1252, koi8r, shift_jis, euc_jp, gb18030})
    for (const auto way : {Way::to_utf8, Way::from_utf8}) {
      const auto name = way == Way::to_utf8 ? text.name + " to UTF-8" : "UTF-8 to " + text.name;
      report.contest("convert, 1 MiB " + name, [&] { return against_all(prepared(way, text, MiB), text); });
      report.contest("convert, 1 KiB " + name,
                     [&] { return against_icu(prepared(way, text, KiB), text.script == "ascii" ? 4 : 2); });
    }
}

void run_large_texts(Report& report) {
  for (const auto& [text, goal] :
       {std::pair{ascii, 1.35}, std::pair{latin1, 2.2}, std::pair{koi8r, 2.8}, std::pair{shift_jis, 4.0}})
    report.contest("convert, 64 MiB " + text.name + " to UTF-8", [&, goal = goal, &text = text] {
      return against_copying(prepared(Way::to_utf8, text, 64 * MiB), {.time_at_most = goal});
    });
  for (const auto* const script : {"ascii", "western", "cyrillic", "japanese", "chinese", "emoji"})
    report.contest("convert, 64 MiB UTF-8 to UTF-8, " + std::string(script), [=] {
      return against_copying(prepared(Way::to_utf8, {"", "UTF-8", script}, 64 * MiB), {.speed_at_least = 0.5});
    });
  report.contest("convert, 2 x 32 MiB KOI8-R to UTF-8", in_parallel);
  for (const auto& text : {ascii, koi8r, shift_jis}) {
    report.measure("convert, memory beyond / input, " + text.name + " to UTF-8", 0.1,
                   [&] { return memory_beyond(Way::to_utf8, text); });
    report.measure("convert, memory beyond / input, UTF-8 to " + text.name, 0.1,
                   [&] { return memory_beyond(Way::from_utf8, text); });
  }
}

/// From UTF-8, the library is compared with both ways of ICU.
Contest against_icu_both(const SharedWork& work, double goal) {
  return {work->content.size(),
          {ours(work), peer("tight ICU", work, tight_icu, goal), peer("ucnv_convertEx", work, convert_ex, goal)}};
}

/// Texts of other encodings, in both directions, with characters that the encoding has.
void run_other_texts(Report& report) {
  struct Other {
    const char* encoding;
    const char* script;
    double goal;
  };
  const Other others[] = {
      {"UTF-16LE", "ascii", 4},         {"UTF-16LE", "western", 4},        {"UTF-16LE", "cyrillic", 4},
      {"UTF-16LE", "japanese", 4},      {"UTF-16LE", "emoji", 4},          {"UTF-16BE", "ascii", 4},
      {"UTF-16BE", "western", 4},       {"UTF-16BE", "cyrillic", 4},       {"UTF-16BE", "japanese", 4},
      {"UTF-16BE", "emoji", 4},         {"GB18030", "korean", 3},          {"GB18030", "emoji", 3},
      {"IBM437", "western", 4},         {"IBM850", "western", 4},          {"IBM852", "polish", 4},
      {"IBM866", "cyrillic", 4},        {"windows-1258", "vietnamese", 4}, {"TIS-620", "thai", 4},
      {"windows-1255", "hebrew", 4},    {"windows-1256", "arabic", 4},     {"KOI8-R", "cyrillic", 6},
      {"ISO-8859-7", "greek", 6},       {"ISO-8859-8", "hebrew", 6},       {"windows-949", "korean", 0.97},
      {"ISO-2022-JP", "japanese", 0.97}};
  for (const auto& [encoding, script, goal] : others) {
    const std::string name = encoding, about = std::string(", ") + script;
    report.contest("convert, " + name + " to UTF-8" + about, [&, goal = goal, script = script] {
      return against_icu(prepared(Way::to_utf8, name, corpus(script, name, MiB)), goal);
    });
    const bool is_dense = goal == 6;  // only to UTF-8; the other direction is one of the common texts, or similar
    if (!is_dense)
      report.contest("convert, UTF-8 to " + name + about, [&, goal = goal, script = script] {
        return against_icu_both(prepared(Way::from_utf8, name, corpus(script, "UTF-8", MiB)), goal);
      });
  }
}

/// Text that the target lacks, and malformed input.
void run_lossy_texts(Report& report) {
  for (const auto& [encoding, script] :
       {std::pair{"ISO-8859-1", "chinese"}, std::pair{"KOI8-R", "emoji"}, std::pair{"Shift_JIS", "emoji"},
        std::pair{"IBM437", "chinese"}, std::pair{"IBM850", "cyrillic"}, std::pair{"IBM852", "cyrillic"},
        std::pair{"IBM866", "emoji"}})
    report.contest(std::string("convert, UTF-8 to ") + encoding + ", " + script + " that it lacks",
                   [encoding = encoding, script = script] {
                     return against_icu_both(prepared(Way::from_utf8, encoding, corpus(script, "UTF-8", MiB)), 2);
                   });
  const auto row = [&](const std::string& name, Way way, const std::string& encoding, const std::string& bytes) {
    report.contest("convert, " + name, [=] {
      std::string content;
      while (content.size() < MiB) content += bytes;
      return against_icu(prepared(way, encoding, content), 1.5);
    });
  };
  for (const std::string encoding : {"Shift_JIS", "EUC-JP", "GB18030", "UTF-8"}) {
    row(encoding + " to UTF-8, every second malformed", Way::to_utf8, encoding, "a\xFD");
    row(encoding + " to UTF-8, all malformed", Way::to_utf8, encoding, "\xFD");
  }
  row("UTF-8 to KOI8-R, every second malformed", Way::from_utf8, "KOI8-R", "a\xFD");
}

/// The time of a process that loads the library and converts one small file, relative to one of `iconv`: the median
/// of several pairs of runs.
double cost_of_a_process() {
  const TemporaryFile file(corpus("cyrillic", "KOI8-R", KiB));
  std::vector<double> ratios;
  for (int round = 0; round < 21; ++round) {
    const auto ours = processor_time_of({ZRQAR_CONVERT_FILE, "KOI8-R", file.name()});
    const auto theirs = processor_time_of({"iconv", "-f", "KOI8-R", "-t", "UTF-8", file.name()});
    ratios.push_back(ours / theirs);
  }
  std::nth_element(ratios.begin(), ratios.begin() + 10, ratios.end());
  return ratios[10];
}

/// The rows for the picture.
void run_sizes(Report& report) {
  for (const auto& text : {ascii, latin1, koi8r, shift_jis})
    for (const std::size_t size : {KiB, 8 * KiB, 64 * KiB, MiB, 16 * MiB})
      report.contest("size, " + std::to_string(size / KiB) + " KiB " + text.name + " to UTF-8",
                     [&] { return against_icu(prepared(Way::to_utf8, text, size), 0); });
}

}  // namespace

void run_converting(Report& report) {
  run_common_texts(report);
  run_large_texts(report);
  run_other_texts(report);
  run_lossy_texts(report);
  report.measure("convert, a process for 1 KiB, CPU time / iconv", 1.5, cost_of_a_process);
  run_sizes(report);
}

}  // namespace benchmarks
