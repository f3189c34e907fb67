#include "readArchive.hpp"

#include "EntryStream.hpp"

#include <qardatainterfaces/QARPath.hpp>

#include <set>

namespace packing {
namespace {

namespace di = Korvane::qardatainterfaces;
using di::QARPath;

/// Reads one archive.
class Reading {
public:
  Reading(const std::string& path, const Limits& limits, di::QARFileReaderFactory& factory, EntryConsumer& consumer)
      : archive_(path, limits), factory_(factory), consumer_(consumer) {}

  std::optional<Description> run();

private:
  void readEntry();
  void readFile();
  void readLink();
  void readHardLink();
  void readDescription();
  void compare() const;

  ArchiveReader archive_;
  di::QARFileReaderFactory& factory_;
  EntryConsumer& consumer_;
  std::set<std::string> seen_;
  std::set<std::string> files_;
  Fingerprints found_;
  std::optional<Description> description_;
};

std::optional<Description> Reading::run() {
  while (archive_.next()) readEntry();
  if (description_) compare();
  return std::move(description_);
}

void Reading::readEntry() {
  const auto& name = archive_.name();
  const bool isDirectory = archive_.kind() == ArchiveReader::Kind::directory;
  if (name.empty() && !isDirectory) throw BadArchive("an entry has no name");
  if (!seen_.insert(name).second) throw BadArchive(name + ": occurs twice");
  if (name == Description::name) return readDescription();
  switch (archive_.kind()) {
    case ArchiveReader::Kind::directory: return consumer_.directory(name);
    case ArchiveReader::Kind::file: return readFile();
    case ArchiveReader::Kind::link: return readLink();
    case ArchiveReader::Kind::hardLink: return readHardLink();
  }
}

void Reading::readFile() {
  const auto& name = archive_.name();
  EntryStream stream(archive_);
  const auto reader = factory_.getReader(QARPath::fromNative(name), stream);
  consumer_.file(name, archive_.executable(), *reader);
  found_.emplace(name, stream.fingerprint());
  files_.insert(name);
}

void Reading::readLink() {
  const auto& target = archive_.target();
  if (mayLeadOut(archive_.name(), target))
    throw BadArchive(archive_.name() + ": the link may lead out of the directory, to " + target);
  Fingerprint fingerprint;
  fingerprint.add(target.data(), target.size());
  found_.emplace(archive_.name(), fingerprint);
  consumer_.link(archive_.name(), target);
}

void Reading::readHardLink() {
  const auto& target = archive_.target();
  // Not for a link: from another directory, a relative target would name another file.
  if (!files_.contains(target))
    throw BadArchive(archive_.name() + ": is a hard link to something that is not an earlier file");
  if (factory_.willBeTransformed(QARPath::fromNative(archive_.name())) ||
      factory_.willBeTransformed(QARPath::fromNative(target)))
    throw BadArchive(archive_.name() + ": is a hard link, which cannot be converted");
  files_.insert(archive_.name());
  consumer_.hardLink(archive_.name(), target);
}

void Reading::readDescription() {
  if (archive_.kind() != ArchiveReader::Kind::file) throw BadArchive(archive_.name() + ": is not a file");
  std::string text;
  std::size_t size = 0;
  do {
    text.resize(size + 64 * 1024);
    const auto count = archive_.read(text.data() + size, text.size() - size);
    if (count == 0) break;
    size += count;
  } while (size <= Description::most);
  if (size > Description::most) throw BadArchive("the description is too large");
  text.resize(size);
  description_ = Description::fromJson(text);
}

void Reading::compare() const {
  const auto& expected = description_->fingerprints;
  for (const auto& [name, fingerprint] : found_) {
    const auto entry = expected.find(name);
    if (entry == expected.end()) throw BadArchive(name + ": is missing in the description");
    if (entry->second != fingerprint) throw BadArchive(name + ": the content is damaged");
  }
  for (const auto& [name, fingerprint] : expected)
    if (!found_.contains(name)) throw BadArchive(name + ": is missing in the archive");
}

}  // namespace

std::optional<Description> readArchive(const std::string& path, const Limits& limits,
                                       di::QARFileReaderFactory& factory, EntryConsumer& consumer) {
  return Reading(path, limits, factory, consumer).run();
}

}  // namespace packing
