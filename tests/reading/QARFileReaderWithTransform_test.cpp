#include "support/HostileStream.hpp"
#include "support/ScriptedTransform.hpp"
#include "support/TemporaryDirectory.hpp"

#include <gmock/gmock.h>
#include <qardatainterfaces/QARFileReaderFactory.hpp>

namespace Korvane::qardatainterfaces {
namespace {

using testing::ElementsAre;

ScriptedTransform::Script answer(bool result, const std::string& output) {
  return [=](const QARByteArray&, QARByteArray& out, QARMetaData&) {
    if (!output.empty()) out = output;
    return result;
  };
}

class QARFileReaderWithTransform : public testing::Test {
protected:
  // Every file with one of the endings goes through the transform that is returned.
  ScriptedTransform& use(ScriptedTransform::Script script, bool empty_input = true, bool empty_output = false) {
    auto* const transform = new ScriptedTransform(std::move(script), empty_input, empty_output);
    factory = std::make_unique<QARFileReaderFactory>();
    factory->addFileTypeHandler({u".x", u".qvz", u".xqvz", u".QVZ"}, transform);
    return *transform;
  }

  const TemporaryDirectory directory;
  std::unique_ptr<QARFileReaderFactory> factory;
};

TEST_F(QARFileReaderWithTransform, JudgesEmptyContentAndFailures) {
  constexpr int bad = QARFileReader::transform_failed, empty = QARFileReader::zero_length;
  struct {
    std::string content;
    bool empty_input, empty_output, result;
    std::string output;
    int error, error_of_qvz;
  } const cases[] = {{"in", true, true, true, "out", 0, 0},       {"in", true, true, true, "", 0, 0},
                     {"in", true, false, true, "", bad, bad},     {"in", true, true, false, "", bad, empty},
                     {"in", true, true, false, "left", bad, bad}, {"", true, false, true, "out", 0, 0},
                     {"", false, true, true, "out", empty, empty}};
  for (const auto& [content, empty_input, empty_output, result, output, ordinary_error, error_of_qvz] : cases)
    for (const std::string name : {"a.x", "a.qvz"})
      for (const bool whole : {false, true}) {
        SCOPED_TRACE(name + ": " + content + " becomes " + output + (whole ? " whole" : " in a chunk"));
        auto& transform = use(answer(result, output), empty_input, empty_output);
        const auto reader = factory->getReader(directory.file(name, content));
        EXPECT_TRUE(!reader->more() && reader->readSucceeded());
        const auto got = whole ? text(reader->readAll()) : chunk(*reader, 99);
        const int error = name == "a.x" ? ordinary_error : error_of_qvz;
        EXPECT_EQ(got, error != 0 && !whole ? refused : content.empty() ? "" : output);
        EXPECT_EQ(reader->lastError(), error);
        EXPECT_EQ(reader->more(), whole && error == 0 && got == "out");
        EXPECT_EQ(transform.inputs.size(), content.empty() ? 0U : 1U);
        EXPECT_EQ(reader->ready(), 0);
      }
}

TEST_F(QARFileReaderWithTransform, TakesThePathOfAQvzFileForItsContent) {
  use(ScriptedTransform::copy);
  for (const std::string name : {"\xC3\xBC.qvz", ".qvz", "a.xqvz", "a.QVZ"})
    EXPECT_EQ(text(factory->getReader(directory.file(name, "ordinary"))->readAll()),
              name == "a.QVZ" ? "ordinary" : directory.native(name));
}

TEST_F(QARFileReaderWithTransform, RunsTheTransformOnceAndCountsOutTheOutput) {
  auto& transform = use([](const QARByteArray& in, QARByteArray& out, QARMetaData& meta) {
    meta.setUserData(meta.isDemo() ? "filled" : "filled, no demo");
    return ScriptedTransform::copy(in, out, meta);
  });
  const auto reader = factory->getReader(directory.file("a.x", "0123456789"));
  EXPECT_STREQ(reader->getTransformId(), "scripted");
  QARMetaData first(false, ""), later(false, "kept");
  EXPECT_EQ(chunk(*reader, 4, first), "0123");
  EXPECT_EQ(first.getUserData(), "filled, no demo");
  EXPECT_EQ(text(reader->readAll(later)), "0123456789");
  EXPECT_EQ(chunk(*reader, 4, later), "4567");
  EXPECT_EQ(chunk(*reader, 0), "");
  EXPECT_TRUE(reader->more());
  EXPECT_EQ(chunk(*reader, 2), "89");
  EXPECT_FALSE(reader->more()) << "with the last byte";
  EXPECT_EQ(chunk(*reader, 4), "");
  EXPECT_EQ(text(reader->readAll()), "0123456789");
  EXPECT_EQ(later.getUserData(), "kept");
  EXPECT_EQ(transform.inputs.size(), 1U);
}

TEST_F(QARFileReaderWithTransform, TriesAgainFromTheBeginningAfterAFailure) {
  auto& transform = use([](auto&&...) -> bool { throw std::domain_error("broken"); });
  const auto reader = factory->getReader(directory.file("a.x", "first"));
  EXPECT_THROW(chunk(*reader, 9), std::domain_error);
  EXPECT_THROW(reader->readAll(), std::domain_error);
  transform.script = answer(false, "left");
  EXPECT_EQ(chunk(*reader, 9), refused);
  directory.file("a.x", "second");
  EXPECT_EQ(text(reader->readAll()), "left");
  EXPECT_THAT(transform.inputs, ElementsAre("first", "first", "first", "second"));
  directory.file("a.x", "");
  EXPECT_EQ(chunk(*reader, 9), "") << "what the failure left is not the content";
  EXPECT_TRUE(reader->readSucceeded());
  EXPECT_EQ(text(reader->readAll()), "");
}

TEST_F(QARFileReaderWithTransform, GathersAStreamInEveryWay) {
  const auto content = pattern(30000);
  const std::function<std::string(QARFileReader&, QARMetaData&)> ways[] = {
      [](auto& reader, auto&) { return chunk(reader, 99999); },
      [](auto& reader, auto&) { return text(reader.readAll()); },
      [](auto& reader, auto& meta) { return text(reader.readAll(meta)); }};
  const std::tuple<HostileStream::Manners, int, int> cases[] = {{{.most = 1}, 0, 0},
                                                                {{.most = 8191, .idle = 99}, 0, 0},
                                                                {{.boasts = true}, 0, 0},
                                                                {{.most = 5000, .idle = 100}, 6, 0},
                                                                {{.most = 5000, .throws_at = 15000}, 0, 1}};
  for (const auto& way : ways)
    for (const auto& [manners, stalls, breaks] : cases) {
      SCOPED_TRACE(testing::Message() << "way " << &way - ways << ", bytes per read " << manners.most);
      auto& transform = use(ScriptedTransform::copy);
      HostileStream stream(content, manners);
      const auto reader = factory->getReader(u"no/file.x", stream);
      QARMetaData meta;
      for (int i = 0; i < breaks; ++i) EXPECT_THROW(way(*reader, meta), std::runtime_error);
      for (int i = 0; i < stalls; ++i) {
        EXPECT_THAT(way(*reader, meta), testing::AnyOf("", refused));
        EXPECT_EQ(reader->lastError(), QARFileReader::transform_failed);
      }
      EXPECT_EQ(way(*reader, meta), content);
      EXPECT_TRUE(reader->readSucceeded());
      EXPECT_EQ(transform.inputs.size(), 1U);
      EXPECT_EQ(reader->ready(), QARFileReader::not_open);
    }
}

TEST_F(QARFileReaderWithTransform, JudgesAnEmptyStreamByTheRulesForChunks) {
  for (const bool allowed : {true, false}) {
    use([](auto&&...) { return ADD_FAILURE(), true; }, allowed);
    HostileStream stream("");
    const auto reader = factory->getReader(u"a.x", stream);
    EXPECT_EQ(text(reader->readAll()), "");
    EXPECT_TRUE(reader->readSucceeded());
    EXPECT_EQ(chunk(*reader, 9), allowed ? "" : refused);
    reader->readAll();
    EXPECT_EQ(reader->lastError(), allowed ? 0 : QARFileReader::zero_length) << "not reset";
  }
}

TEST_F(QARFileReaderWithTransform, TransformsEachGatheringOfAStreamThatGoesOn) {
  auto& transform = use(ScriptedTransform::copy);
  HostileStream stream("0123456789");
  const auto reader = factory->getReader(u"a.x", stream);
  EXPECT_EQ(text(reader->readAll()), "0123456789");
  EXPECT_EQ(chunk(*reader, 6), "012345");
  stream.append("abc");
  EXPECT_EQ(text(reader->readAll()), "abc");
  EXPECT_TRUE(reader->more());
  EXPECT_EQ(chunk(*reader, 6), "") << "the place is past the end of what is shorter";
  EXPECT_FALSE(reader->more());
  stream.append("more");
  transform.script = answer(false, "");
  EXPECT_EQ((reader->readAll(), reader->lastError()), QARFileReader::transform_failed);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
