#pragma once

#include "StandardInput.hpp"

#include <qardatainterfaces/QARFileReader.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace Korvane::qardatainterfaces {
class QARFileReaderFactory;
}

namespace qarread {

/// One path, or standard input, opened by the reader that the factory picks for it.
class Source {
public:
  using Take = std::function<void(const void* bytes, std::size_t size)>;

  /// Throws what the factory throws.
  static Source path(Korvane::qardatainterfaces::QARFileReaderFactory& factory, const std::string& path,
                     bool runtime);
  static Source standardInput(Korvane::qardatainterfaces::QARFileReaderFactory& factory, const std::string& name);

  /// "plain", "link" or "transform".
  const char* reader() const noexcept;
  std::string transform() const { return reader_->getTransformId(); }
  /// The size in the file system before anything is read, or the number of bytes read from standard input; none for a
  /// file without a size, such as a device.
  std::optional<std::uint64_t> size() const;

  /// Whether the transform receives the path instead of the content. The library does so for paths that end with
  /// "qvz".
  bool convertsPath() const noexcept { return convertsPath_; }

  /// Passes the content to `take` piece by piece, and returns the report of a `Converting` transform on losses.
  /// Throws `ReadFailure`, and what the transform and `take` throw.
  std::string deliver(std::span<unsigned char> buffer, const Take& take);

private:
  enum class Kind { plain, link, transform };

  Source() = default;

  std::unique_ptr<StandardInput> standardInput_;
  std::unique_ptr<Korvane::qardatainterfaces::QARFileReader> reader_;  // may refer to `standardInput_`
  Kind kind_ = Kind::plain;
  bool convertsPath_ = false;
  std::optional<std::uint64_t> size_;
};

}  // namespace qarread
