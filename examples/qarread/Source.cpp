#include "Source.hpp"

#include "../reason.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <sys/stat.h>

namespace qarread {

using Korvane::qardatainterfaces::QARFileReader;
using Korvane::qardatainterfaces::QARFileReaderFactory;

ReadFailure::ReadFailure(int status, const std::error_code& reason)
    : std::runtime_error("reading failed with status " + std::to_string(status) + inParentheses(reason)),
      status_(status) {}

Source::Source(QARFileReaderFactory& factory, const std::string& path, bool runtime) {
  auto name = Korvane::qardatainterfaces::QARPath::fromNative(path);
  if (name.compare(0, 3, u"//:") == 0) name.erase(0, 1);  // which the factory would leave out
  reader_ = runtime ? factory.getRuntimeReader(name) : factory.getReader(name);
  kind_ = factory.willBeTransformed(name) ? Kind::transform : Kind::plain;
  struct stat found {};
  if ((runtime ? ::stat : ::lstat)(path.c_str(), &found) != 0) return;
  if (S_ISLNK(found.st_mode)) kind_ = Kind::link;
  if (S_ISLNK(found.st_mode) || S_ISREG(found.st_mode)) size_ = static_cast<std::uint64_t>(found.st_size);
}

const char* Source::reader() const noexcept {
  switch (kind_) {
    case Kind::link: return "link";
    case Kind::transform: return "transform";
    default: return "plain";
  }
}

void Source::deliver(std::span<unsigned char> buffer, const Take& take) {
  if (kind_ == Kind::link) {  // each chunk read would begin anew
    const auto& target = reader_->readAll();
    if (const auto reason = reader_->readError())
      throw std::runtime_error("the link does not tell its target" + inParentheses(reason));
    take(target.begin(), target.size());
    return;
  }
  do {
    const auto count = reader_->read(buffer.data(), static_cast<unsigned int>(buffer.size()));
    // To a transform, a file that cannot be read is an empty one.
    if (const auto reason = reader_->readError(); reason || count == QARFileReader::failed)
      throw ReadFailure(reader_->readSucceeded() ? reader_->ready() : reader_->lastError(), reason);
    take(buffer.data(), count);
  } while (reader_->more());
}

}  // namespace qarread
