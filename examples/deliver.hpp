#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

#include <functional>
#include <span>
#include <stdexcept>
#include <string>

namespace qarread {

/// A reader has reported a failure. The text says what and why, to be put behind the name of the file.
class ReadFailure : public std::runtime_error {
public:
  ReadFailure(const char* status, const std::string& what) : std::runtime_error(what), status_(status) {}

  /// The name that the library has for it: "not_good", "transform_failed" or "zero_length".
  const char* status() const noexcept { return status_; }

private:
  const char* status_;
};

/// Throws `ReadFailure` if the last read of `reader`, which was given `meta`, has failed.
void checkRead(Korvane::qardatainterfaces::QARFileReader& reader,
               const Korvane::qardatainterfaces::QARMetaData& meta);

/// Hands what `reader` delivers to `take`, as much at a time as `buffer` holds. Throws what `checkRead`, the reader
/// and `take` throw. Not for a link, of which each chunk read begins anew.
void deliver(Korvane::qardatainterfaces::QARFileReader& reader, Korvane::qardatainterfaces::QARMetaData& meta,
             std::span<unsigned char> buffer, const std::function<void(const void* bytes, std::size_t size)>& take);

/// What a `Converting` transform that has succeeded tells of losses; empty without any.
std::string lossOf(Korvane::qardatainterfaces::QARFileReader& reader,
                   const Korvane::qardatainterfaces::QARMetaData& meta);

}  // namespace qarread
