#include "Source.hpp"

#include "../deliver.hpp"
#include "../reason.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <sys/stat.h>

namespace qarread {

using Korvane::qardatainterfaces::QARFileReaderFactory;
using Korvane::qardatainterfaces::QARMetaData;
using Korvane::qardatainterfaces::QARPath;

Source Source::path(QARFileReaderFactory& factory, const std::string& path, bool runtime) {
  Source source;
  auto name = QARPath::fromNative(path);
  if (name.compare(0, 3, u"//:") == 0) name.erase(0, 1);  // the factory would drop this prefix
  source.reader_ = runtime ? factory.getRuntimeReader(name) : factory.getReader(name);
  if (factory.willBeTransformed(name)) source.kind_ = Kind::transform;
  struct stat found {};
  if ((runtime ? ::stat : ::lstat)(path.c_str(), &found) != 0) return source;
  if (S_ISLNK(found.st_mode)) source.kind_ = Kind::link;
  if (S_ISLNK(found.st_mode) || S_ISREG(found.st_mode)) source.size_ = static_cast<std::uint64_t>(found.st_size);
  source.convertsPath_ = source.kind_ == Kind::transform && path.ends_with("qvz") && found.st_size > 0;
  return source;
}

Source Source::standardInput(QARFileReaderFactory& factory, const std::string& name) {
  Source source;
  const auto path = QARPath::fromNative(name);
  source.standardInput_ = std::make_unique<StandardInput>();
  source.reader_ = factory.getReader(path, *source.standardInput_);
  if (factory.willBeTransformed(path)) source.kind_ = Kind::transform;
  return source;
}

const char* Source::reader() const noexcept {
  switch (kind_) {
    case Kind::link: return "link";
    case Kind::transform: return "transform";
    default: return "plain";
  }
}

std::optional<std::uint64_t> Source::size() const { return standardInput_ ? standardInput_->count() : size_; }

std::string Source::deliver(std::span<unsigned char> buffer, const Take& take) {
  QARMetaData meta;
  if (kind_ == Kind::link) {  // read at once: each chunk read of a link starts at its beginning
    const auto& target = reader_->readAll();
    if (const auto reason = reader_->readError())
      throw ReadFailure("not_good", "the target of the link cannot be read" + inParentheses(reason));
    take(target.begin(), target.size());
    return "";
  }
  qarread::deliver(*reader_, meta, buffer, take);
  return lossOf(*reader_, meta);
}

}  // namespace qarread
