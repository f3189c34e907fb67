#pragma once

#include <CodePageSurvey.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/content.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

/// What the tests of the two code-page transforms have in common.
namespace Korvane::qardatainterfaces {

struct Conversion {
  const char* name;
  const char* encoding;
  std::string in, out;
  int lines;
};

inline void PrintTo(const Conversion& conversion, std::ostream* stream) { *stream << conversion.name; }
inline auto name_of = [](const auto& info) { return std::string(info.param.name); };

inline std::string invalid_character_lines(int count) {
  return count == 0 ? "" : "Invalid character was detected.\n" + invalid_character_lines(count - 1);
}

inline void expect_conversion(QARTransform& transform, const Conversion& conversion) {
  const ContentLocale locale(conversion.encoding);
  QARByteArray array(conversion.in), out(std::string("before"));
  QARMetaData meta(false, "user data");
  const CapturedOutput output;
  EXPECT_TRUE(transform.transform(array, out, meta));
  EXPECT_EQ(output.text(), invalid_character_lines(conversion.lines));
  EXPECT_TRUE(out == QARByteArray(conversion.out)) << testing::PrintToString(text(out));
  EXPECT_EQ(meta.getUserData(), "user data");
  EXPECT_TRUE(transform.transform(array, array, meta)) << "in and out are the same";
  EXPECT_TRUE(array == out);
}

/// The code page is unknown; `lines` have been printed by then.
inline void expect_refusal(QARTransform& transform, const std::string& content, int lines) {
  const ContentLocale locale("no-such-page");
  QARByteArray out(std::string("before"));
  unsigned char byte = 0;
  out.read(&byte, 1);
  QARMetaData meta(false, "user data");
  const CapturedOutput output;
  try {
    transform.transform(QARByteArray(content), out, meta);
    ADD_FAILURE() << "nothing is thrown";
  } catch (const rtxi18nutil::DeployedException& error) {
    EXPECT_EQ(error.identifier(), "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER");
  }
  EXPECT_EQ(output.text(), invalid_character_lines(lines));
  EXPECT_EQ(text(out), "before");
  out.read(&byte, 1);
  EXPECT_EQ(byte, 'e') << "not even the read position has changed";
  EXPECT_EQ(meta.getUserData(), "user data");
}

inline std::string golden(const std::string& name) {
  std::ostringstream content;
  content << std::ifstream(ZRQAR_SOURCE_DIR "/tests/golden/" + name, std::ios::binary).rdbuf();
  return content.str();
}

/// Real text in many code pages: through the factory, and long enough for many blocks that end anywhere.
template <class Transform>
void expect_golden(const std::string& from, const std::string& to) {
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({std::u16string(from.begin(), from.end())}, new Transform);
  for (const std::string encoding :
       {"ISO-8859-1", "CP1252", "KOI8-R", "SJIS", "eucJP", "GB18030", "Big5", "eucKR", "UTF-8"}) {
    SCOPED_TRACE(encoding);
    const ContentLocale locale(encoding);
    const std::string path = ZRQAR_SOURCE_DIR "/tests/golden/" + encoding + from;
    const auto expected = golden(encoding + to);
    ASSERT_GT(expected.size(), 40U);
    EXPECT_EQ(text(factory.getReader(std::u16string(path.begin(), path.end()))->readAll()), expected);

    std::string in, out;
    for (std::size_t i = 0; i < 1000; ++i) {
      in += golden(encoding + from) + std::string(i % 5, 'x');
      out += expected + std::string(i % 5, 'x');
    }
    Transform transform;
    QARByteArray result;
    QARMetaData meta;
    transform.transform(QARByteArray(in), result, meta);
    EXPECT_EQ(text(result), out);
  }
}

/// What the page has: all sequences of one and two bytes that it reads.
inline std::string all_characters(const std::string& page) {
  ku::i18n::codecvt_string_to_ustring decoder(page, true);
  std::string all;
  for (unsigned i = 0; i < 0x10100; ++i) {
    const char bytes[] = {static_cast<char>(i >> 8), static_cast<char>(i)};
    const std::string sequence(bytes + (i >= 0x10000), bytes + 2);
    if (decoder.convert(sequence.data(), sequence.size()).find(u'\xFFFD') == std::u16string::npos) all += sequence;
  }
  return all;
}

/// Every code page: what becomes of a text, faults and all, is what the two converters make of it one after the
/// other.
inline void expect_agreement(QARTransform& transform, const std::string& from, const std::string& to) {
  using Decoder = ku::i18n::codecvt_string_to_ustring;
  using Encoder = ku::i18n::codecvt_ustring_to_string;
  for (const auto& page : code_page_names()) {
    const ContentLocale locale(page);
    const CapturedOutput output;
    std::string good = all_characters(page);
    if (!from.empty()) {
      const auto units = Decoder(page, true).convert(good.data(), good.size());
      good = Encoder(from, true).convert(units.data(), units.size());
    }
    std::string faulty = good + "\xF0\x90\x90\xB7";
    for (std::size_t i = 50; i < faulty.size(); i += 1009) faulty[i] = static_cast<char>(0x80 + i % 128);
    for (const auto& in : {good, faulty}) {
      const auto units = Decoder(from, true).convert(in.data(), in.size());
      const auto expected = Encoder(to, true).convert(units.data(), units.size());
      QARByteArray out;
      QARMetaData meta;
      transform.transform(QARByteArray(in), out, meta);
      EXPECT_TRUE(out == QARByteArray(expected)) << page;
    }
  }
}

/// Threads share one transform while the local code page changes: each result is that of one of the code pages.
inline void expect_thread_safety(QARTransform& transform, const std::string& content, const std::string& latin,
                                 const std::string& cyrillic) {
  const ContentLocale locale("ISO-8859-1");
  std::atomic<int> of_latin = 0, of_cyrillic = 0, left = 3;
  const auto work = [&] {
    for (int i = 0; i < 500; ++i) {
      QARByteArray out;
      QARMetaData meta;
      transform.transform(QARByteArray(content), out, meta);
      of_latin += text(out) == latin;
      of_cyrillic += text(out) == cyrillic;
    }
    --left;
  };
  std::thread threads[] = {std::thread(work), std::thread(work), std::thread(work)};
  while (left > 0)
    for (const char* const encoding : {"en.KOI8-R", "en.ISO-8859-1"})
      ku::i18n::ZrLocale::global(ku::i18n::ZrLocale(encoding));
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(of_latin + of_cyrillic, 1500);
}

}  // namespace Korvane::qardatainterfaces
