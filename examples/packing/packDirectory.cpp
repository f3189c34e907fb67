#include "packDirectory.hpp"

#include "../deliver.hpp"
#include "../walk.hpp"
#include "ArchiveWriter.hpp"
#include "Descriptor.hpp"
#include "Interruption.hpp"
#include "deliverEntry.hpp"
#include "entryNames.hpp"

#include <qardatainterfaces/QARPath.hpp>
#include <qardatainterfaces/Version.hpp>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include <sys/stat.h>

namespace packing {
namespace {

namespace di = Korvane::qardatainterfaces;
using di::QARPath;
using qarread::Found;

/// Packs one directory.
class Packing {
public:
  Packing(const std::string& archive, const PackOptions& options, di::QARFileReaderFactory& factory,
          Description& description, const Remark& remark)
      : writer_(archive, options.time),
        options_(options),
        factory_(factory),
        description_(description),
        remark_(remark) {}

  void run(const std::string& directory);

private:
  void packDirectory(const Found& found);
  void pack(const Found& found);
  Fingerprint packLink(const std::string& name, di::QARFileReader& reader);
  Fingerprint packUnchanged(const std::string& name, const struct stat& status, di::QARFileReader& reader,
                            di::QARMetaData& meta);
  Fingerprint packConverted(const std::string& name, const struct stat& status, di::QARFileReader& reader,
                            di::QARMetaData& meta);
  void packDescription();

  ArchiveWriter writer_;
  const PackOptions& options_;
  di::QARFileReaderFactory& factory_;
  Description& description_;
  const Remark& remark_;
};

void checkName(const std::string& name) {
  if (name == Description::name) throw std::runtime_error(name + ": the archive needs this name for its description");
}

bool isExecutable(const struct stat& status) { return (status.st_mode & 0111) != 0; }

void Packing::run(const std::string& directory) {
  struct stat status {};
  if (::stat(directory.c_str(), &status) != 0) failAbout(directory);
  if (!S_ISDIR(status.st_mode)) throw std::system_error(ENOTDIR, std::generic_category(), directory);
  qarread::walk(
      directory + '/', [this](const Found& found) { pack(found); },
      [](const std::string& path, const std::error_code& error) { throw std::system_error(error, path); },
      [this](const Found& found) { packDirectory(found); });
  packDescription();
  writer_.finish();
}

void Packing::packDirectory(const Found& found) {
  checkName(found.name);
  writer_.directory(found.name);
  description_.catalogue.addTarvoPathEntry(QARPath::fromNative(found.name.native()));
}

void Packing::pack(const Found& found) {
  checkInterruption();
  const std::string name = found.name;
  checkName(name);
  struct stat status {};
  if (::lstat(found.path.c_str(), &status) != 0) failAbout(found.path);
  if (writer_.is(status)) throw std::runtime_error("the archive is in the directory to be packed");
  const auto path = QARPath::fromNative(found.path.native());
  const auto reader = factory_.getReader(path);
  di::QARMetaData meta(options_.demo, "");
  Fingerprint fingerprint;
  if (S_ISLNK(status.st_mode))
    fingerprint = packLink(name, *reader);
  else if (factory_.willBeTransformed(path))
    fingerprint = packConverted(name, status, *reader, meta);
  else
    fingerprint = packUnchanged(name, status, *reader, meta);
  const auto entry = QARPath::fromNative(name);
  description_.catalogue.addFileMapEntry(entry, QARPath::fromNative(found.name.filename().native()), meta.isDemo());
  description_.catalogue.getFileMap()[entry].setUserData(meta.getUserData());
  if (found.name.extension() == ".jar") description_.catalogue.addClassPathEntry(entry);
  description_.fingerprints.emplace(name, fingerprint);
}

Fingerprint Packing::packLink(const std::string& name, di::QARFileReader& reader) {
  const auto& content = reader.readAll();  // each chunk read of a link would start again at its beginning
  if (const auto reason = reader.readError()) throw std::system_error(reason, name);
  const std::string target(content.begin(), content.end());
  if (mayLeadOut(name, target)) remark_(name, "the link may lead out of the directory; unpack will refuse it");
  return writer_.link(name, target);
}

Fingerprint Packing::packUnchanged(const std::string& name, const struct stat& status, di::QARFileReader& reader,
                                   di::QARMetaData& meta) {
  auto left = static_cast<std::uint64_t>(status.st_size);
  writer_.beginFile(name, isExecutable(status), left);
  deliverEntry(reader, name, meta, [&](const void* bytes, std::size_t size) {
    checkInterruption();
    if (size > left) throw std::runtime_error(name + ": has grown while it was packed");
    left -= size;
    writer_.write(bytes, size);
  });
  if (left > 0) throw std::runtime_error(name + ": has shrunk while it was packed");
  return writer_.endFile();
}

// The size is known only after the whole content has been converted.
Fingerprint Packing::packConverted(const std::string& name, const struct stat& status, di::QARFileReader& reader,
                                   di::QARMetaData& meta) {
  const auto& content = reader.readAll(meta);
  checkEntry(reader, name, meta);
  if (const auto loss = qarread::lossOf(reader, meta); !loss.empty()) remark_(name, loss);
  writer_.beginFile(name, isExecutable(status), content.size());
  writer_.write(content.begin(), content.size());
  return writer_.endFile();
}

void Packing::packDescription() {
  description_.context.setVersionInfo(libzrqardatainterfaces_version);
  const auto text = description_.toJson();
  writer_.beginFile(Description::name, false, text.size());
  writer_.write(text.data(), text.size());
  writer_.endFile();
}

}  // namespace

void packDirectory(const std::string& directory, const std::string& archive, const PackOptions& options,
                   di::QARFileReaderFactory& factory, Description& description, const Remark& remark) {
  Packing(archive, options, factory, description, remark).run(directory);
}

}  // namespace packing
