// What a program outside the project does with the installed library, where types cross the border: prints the checks
// that fail and counts them in its exit status.
#include <ku/i18n/codecvt.hpp>
#include <opc/InputStream.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/LCPToUTF8Transform.hpp>
#include <qardatainterfaces/QARData.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/Version.hpp>

#include <boost/filesystem/exception.hpp>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

using namespace Korvane::qardatainterfaces;

namespace {

int failures = 0;

void check(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  ++failures;
}

// Whether `action` throws an exception that is caught as an `Error` for which `matches` holds.
template <class Error, class Action, class Matches>
bool throws(Action action, Matches matches) {
  try {
    action();
  } catch (const Error& error) {
    return matches(error);
  } catch (...) {
  }
  return false;
}

struct Refusal {};

class UpperCase : public QARTransform {
public:
  UpperCase() : QARTransform("upper case", true, false) {}
  bool cleanup() override { return true; }
  bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) override {
    std::string text(in.begin(), in.end());
    if (text == "refuse") throw Refusal();
    for (char& letter : text) letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    out = QARByteArray(text);
    meta.setUserData(getId());
    return true;
  }
};

class TextStream : public opc::InputStream {
public:
  explicit TextStream(std::string text) : text_(std::move(text)) {}
  std::uint64_t read(void* buffer, std::uint64_t size) override {
    const auto count = text_.copy(static_cast<char*>(buffer), size, at_);
    at_ += count;
    return count;
  }
  bool exhausted() override { return at_ == text_.size(); }

private:
  std::string text_;
  std::size_t at_ = 0;
};

class EmptyReader : public QARFileReader {
public:
  const char* getTransformId() override { return "none"; }
  unsigned int read(void*, unsigned int) override { return 0; }
};

}  // namespace

int main() {
  QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".txt"}, new UpperCase);

  TextStream stream("shout");
  QARMetaData meta;
  const auto reader = factory.getReader(u"a.txt", stream);
  check(reader->readAll(meta) == QARByteArray("SHOUT") && meta.getUserData() == "upper case",
        "own transform, stream");
  check(dynamic_cast<EmptyReader*>(reader.get()) == nullptr, "a reader of the library is none of the client's");
  const std::unique_ptr<QARFileReader> own = std::make_unique<EmptyReader>();
  check(dynamic_cast<EmptyReader*>(own.get()) != nullptr && own->ready() == QARFileReader::not_open, "own reader");
  const std::unique_ptr<QARTransform> transform = std::make_unique<LCPToUTF8Transform>();
  check(dynamic_cast<LCPToUTF8Transform*>(transform.get()) != nullptr, "a transform of the library");
  check(dynamic_cast<UpperCase*>(transform.get()) == nullptr, "a transform of the library is none of the client's");

  check(throws<Korvane::rtxi18nutil::DeployedException>(
            [&] { factory.getReader(u"missing"); },
            [](const auto& error) { return error.identifier() == "QARDATAINTERFACES_FILE_NOT_EXIST"; }),
        "DeployedException");
  check(throws<boost::filesystem::filesystem_error>(
            [&] { factory.getReader(u"\xD800"); },
            [](const auto& error) { return error.code() == boost::system::errc::illegal_byte_sequence; }),
        "boost::filesystem::filesystem_error");
  check(throws<ku::i18n::CvtInvalidCharacter>(
            [] { ku::i18n::codecvt_string_to_ustring("UTF-8", false).convert("\xFF", 1); },
            [](const auto& error) { return *error.what() != 0; }),
        "ku::i18n::CvtInvalidCharacter");
  TextStream refused("refuse");
  check(
      throws<Refusal>([&] { factory.getReader(u"b.txt", refused)->readAll(); }, [](const Refusal&) { return true; }),
      "an exception of the client's passes through the library");

  QARData data;
  check(data.addFileMapEntry(u"entry", u"record", false) == 1, "catalogue");
  check(std::string(libzrqardatainterfaces_version).find("1.") == 0, "version");
  return failures;
}
