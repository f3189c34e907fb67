#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <span>
#include <stdexcept>
#include <string>

namespace qarread {

/// A reader reported a failure. The text says what failed and why; print it after the name of the file.
class ReadFailure : public std::runtime_error {
public:
  ReadFailure(const char* status, const std::string& what) : std::runtime_error(what), status_(status) {}

  /// The library's name of the failure: "not_good", "transform_failed" or "zero_length".
  const char* status() const noexcept { return status_; }

private:
  const char* status_;
};

/// Throws `ReadFailure` if the last read of `reader`, which was called with `meta`, failed.
void checkRead(Korvane::qardatainterfaces::QARFileReader& reader,
               const Korvane::qardatainterfaces::QARMetaData& meta);

/// Reads the content in chunks of the size of `buffer`, and passes each chunk to `take`. Throws what `checkRead`, the
/// reader and `take` throw. Not for links: each chunk read of a link starts at its beginning.
void deliver(Korvane::qardatainterfaces::QARFileReader& reader, Korvane::qardatainterfaces::QARMetaData& meta,
             std::span<unsigned char> buffer, const std::function<void(const void* bytes, std::size_t size)>& take);

/// The report of a successful `Converting` transform on losses; empty if there are none.
std::string lossOf(Korvane::qardatainterfaces::QARFileReader& reader,
                   const Korvane::qardatainterfaces::QARMetaData& meta);

}  // namespace qarread
