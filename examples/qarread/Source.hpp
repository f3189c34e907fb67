#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>

namespace Korvane::qardatainterfaces {
class QARFileReaderFactory;
}

namespace qarread {

/// A reader has reported a failure.
class ReadFailure : public std::runtime_error {
public:
  /// `reason` is the system's, if it has one.
  ReadFailure(int status, const std::error_code& reason);
  int status() const noexcept { return status_; }

private:
  int status_;
};

/// One path, opened by the reader that the factory picks for it.
class Source {
public:
  using Take = std::function<void(const void* bytes, std::size_t size)>;

  /// Throws what the factory throws.
  Source(Korvane::qardatainterfaces::QARFileReaderFactory& factory, const std::string& path, bool runtime);

  /// "plain", "link" or "transform".
  const char* reader() const noexcept;
  std::string transform() const { return reader_->getTransformId(); }
  /// What the file system says before anything is read; nothing for what has no size.
  std::optional<std::uint64_t> size() const noexcept { return size_; }

  /// Hands the content to `take` piece by piece. Throws `ReadFailure`, and what the transform and `take` throw.
  void deliver(std::span<unsigned char> buffer, const Take& take);

private:
  enum class Kind { plain, link, transform };

  std::unique_ptr<Korvane::qardatainterfaces::QARFileReader> reader_;
  Kind kind_;
  std::optional<std::uint64_t> size_;
};

}  // namespace qarread
