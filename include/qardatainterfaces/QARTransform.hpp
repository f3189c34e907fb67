#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARMetaData.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// Makes new content from the whole content of a file. Clients derive from it and register objects with a
/// `QARFileReaderFactory`; the factory's readers call them.
///
/// Ownership  The factory owns a registered transform and destroys it. Register each object only once.
/// Threads    Any thread may use the accessors at any time. All readers of one registration share the transform:
///            each derived class documents whether several threads may run its `transform` at once.
class [[gnu::visibility("default")]] QARTransform {
public:
  /// No identifier; empty input is allowed, empty output is not.
  QARTransform();
  /// Copies the text at `id`; throws `std::logic_error` if it is null.
  QARTransform(const char* id, bool allowZeroLengthInputFiles, bool allowZeroLengthOutputFiles);
  virtual ~QARTransform();
  QARTransform(const QARTransform&) = delete;
  QARTransform& operator=(const QARTransform&) = delete;

  /// Ends whatever work a derived transform has in progress; true means success. The library never calls it.
  virtual bool cleanup() = 0;

  /// Replaces the content of `out` with the transformed content of `in`; may read and change `meta`. Before the call,
  /// `out` may have the output of an earlier call, and `meta` has what the caller of the reader stored in it.
  ///
  /// `in` is never empty: it is the content of the file or, for a path that ends with "qvz", that path in UTF-8.
  /// Returning true with a non-empty `out` is a success. An empty `out` is one only if
  /// `allowZeroLengthOutputFiles()` is true. Returning false makes the read fail. An exception reaches the caller of
  /// the reader unchanged.
  virtual bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) = 0;

  /// By default makes `out` a copy of `in` and returns true. The library never calls it.
  virtual bool filter(const QARByteArray& in, QARByteArray& out);

  /// Whether the transform is set up; false unless a derived transform sets `isSetup_`.
  bool isSetup() const;
  /// Whether an empty file is read as empty content, without calling `transform`.
  bool allowZeroLengthInputFiles() const;
  /// Whether an empty result of `transform` is a success.
  bool allowZeroLengthOutputFiles() const;
  /// The identifier, or "" if there is none; never null. The transform owns the text.
  const char* getId();

protected:
  /// The values that the accessors return. Only a constructor may change them, since readers in several threads read
  /// them.
  /// @{
  bool isSetup_ = false;
  bool allowZeroLengthInputFiles_ = true;
  bool allowZeroLengthOutputFiles_ = false;
  std::string id_;
  /// @}
};

}  // namespace Korvane::qardatainterfaces
