#include <CodePageSurvey.hpp>
#include <ku/i18n/codecvt.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include "support/CapturedOutput.hpp"
#include "support/ContentLocale.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/table.hpp"
#include "support/transformed.hpp"

#include <map>

namespace Korvane::qardatainterfaces {
namespace {

template <class Transform>
std::unique_ptr<QARTransform> new_transform() {
  return std::make_unique<Transform>();
}

struct Direction {
  std::unique_ptr<QARTransform> (*make)();
  const char *from, *to;  // the empty one is the local code page
};
using Named = std::pair<const std::string, Direction>;
const std::map<std::string, Direction> directions = {{"to_utf8", {new_transform<LCPToUTF8Transform>, "", "UTF-8"}},
                                                     {"to_lcp", {new_transform<UTF8ToLCPTransform>, "UTF-8", ""}}};
void PrintTo(const Named& named, std::ostream* stream) { *stream << named.first; }

class Conversions : public RowTest {};

TEST_P(Conversions, HaveTheListedResultAndNotices) {
  const auto transform = look_up(row, "transform", directions, row.at(0)).make();
  const ContentLocale locale(row.at(1));
  const auto expected = row.at(3);
  QARByteArray array(row.at(2)), out(std::string("before"));
  unsigned char byte = 0;
  out.read(&byte, 1);
  QARMetaData meta(false, "user data");
  std::string lines;
  for (auto notices = row.number(4); notices > 0; --notices) lines += "Invalid character was detected.\n";
  const CapturedOutput output;
  try {
    EXPECT_TRUE(transform->transform(array, out, meta));
    EXPECT_TRUE(out == QARByteArray(expected)) << testing::PrintToString(text(out));
    EXPECT_EQ(output.text(), lines);
    EXPECT_TRUE(transform->transform(array, array, meta)) << "in and out are the same";
    EXPECT_TRUE(array == out);
  } catch (const rtxi18nutil::DeployedException& error) {
    EXPECT_EQ(error.identifier(), "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER");
    EXPECT_EQ(expected, "(refused)");
    EXPECT_EQ(output.text(), lines);
    EXPECT_EQ(text(out), "before");
    EXPECT_TRUE(out.read(&byte, 1) == 1 && byte == 'e') << "not even the read position has changed";
  }
  EXPECT_EQ(meta.getUserData(), "user data");
}

INSTANTIATE_TEST_SUITE_P(, Conversions, testing::ValuesIn(table("tests/transforms/conversions.txt")), RowTest::name);

class Transforms : public testing::TestWithParam<Named> {
protected:
  const std::unique_ptr<QARTransform> transform = GetParam().second.make();
};

INSTANTIATE_TEST_SUITE_P(, Transforms, testing::ValuesIn(directions),
                         [](const auto& test) { return test.param.first; });

// The text of all sequences of one and two bytes that the page has.
std::string all_characters(const std::string& page) {
  ku::i18n::codecvt_string_to_ustring decoder(page, true);
  std::string all;
  for (unsigned i = 0; i < 0x10100; ++i) {
    const char bytes[] = {static_cast<char>(i >> 8), static_cast<char>(i)};
    const std::string sequence(i < 0x10000 ? bytes : bytes + 1, bytes + 2);
    if (decoder.convert(sequence.data(), sequence.size()).find(u'\xFFFD') == std::u16string::npos) all += sequence;
  }
  return all;
}

TEST_P(Transforms, AgreeWithTheTwoConvertersOneAfterTheOtherInEveryCodePage) {
  const auto convert = [](const std::string& text, const std::string& from, const std::string& to) {
    const auto units = ku::i18n::codecvt_string_to_ustring(from, true).convert(text.data(), text.size());
    return ku::i18n::codecvt_ustring_to_string(to, true).convert(units.data(), units.size());
  };
  // In BOCU-1 one byte can become two units: a block is full, with half a character, before all bytes are consumed.
  std::string pairs(5441, 'x');
  for (int i = 0; i < 8192; ++i) pairs += "\U00010330";
  const auto& [make, from, to] = GetParam().second;
  for (const auto& page : code_page_names()) {
    const ContentLocale locale(page);
    const CapturedOutput output;
    const auto good = *from == 0 ? all_characters(page) : convert(all_characters(page), page, from);
    std::string faulty = good + "\xF0\x90\x90\xB7";
    for (std::size_t i = 50; i < faulty.size(); i += 1009) faulty[i] = static_cast<char>(0x80 + i % 128);
    for (const auto& in : {good, faulty, convert(pairs, "UTF-8", from)})
      EXPECT_TRUE(transformed(*transform, in) == convert(in, from, to)) << page;
  }
}

// A line that cannot be written is an error like any other.
TEST_P(Transforms, LeaveTheOutputUnchangedIfTheLineCannotBeWritten) {
  struct Full final : std::streambuf {
  } full;
  const ContentLocale locale("US-ASCII");
  QARByteArray out(std::string("before"));
  QARMetaData meta;
  auto* const usual = std::cout.rdbuf(&full);
  std::cout.exceptions(std::ios_base::badbit);
  EXPECT_THROW(transform->transform(QARByteArray(std::string("\xFF")), out, meta), std::ios_base::failure);
  std::cout.exceptions(std::ios_base::goodbit);
  std::cout.clear();
  std::cout.rdbuf(usual);
  EXPECT_EQ(text(out), "before");
}

TEST_P(Transforms, HaveTheDefaultPolicies) {
  EXPECT_STREQ(transform->getId(), "");
  EXPECT_TRUE(transform->allowZeroLengthInputFiles() && !transform->allowZeroLengthOutputFiles());
  EXPECT_TRUE(transform->cleanup() && !transform->isSetup());
}

TEST(QARTransform, ReturnsItsArgumentsAndFiltersByCopying) {
  char id[] = "name";
  ScriptedTransform named(ScriptedTransform::copy, false, true, id);
  id[0] = 'g';
  EXPECT_STREQ(named.getId(), "name");
  EXPECT_EQ(named.getId(), named.getId());
  EXPECT_TRUE(!named.isSetup() && !named.allowZeroLengthInputFiles() && named.allowZeroLengthOutputFiles());

  QARByteArray in(std::string("ab")), out;
  unsigned char byte = 0;
  in.read(&byte, 1);
  EXPECT_TRUE(named.filter(in, out) && out == in && named.filter(in, in));
  EXPECT_TRUE(in.read(&byte, 1) == 1 && byte == 'b') << "onto itself it changes nothing";
  EXPECT_TRUE(out.read(&byte, 1) == 1 && byte == 'a') << "a copy is read from its start";
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
