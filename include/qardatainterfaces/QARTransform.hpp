#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARMetaData.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// Makes new content from the whole content of a file. Clients derive from it and register objects with a
/// `QARFileReaderFactory`, whose readers call them.
///
/// Ownership  A registered transform belongs to its factory, which destroys it. It is registered once.
/// Threads    The accessors may be used by any thread at any time. Readers of one registration share the
///            transform: each derived class says whether its `transform` may run in several threads at once.
class [[gnu::visibility("default")]] QARTransform {
public:
  /// No identifier; empty input is allowed, empty output is not.
  QARTransform();
  /// Copies the text at `id`; throws `std::logic_error` if it is null.
  QARTransform(const char* id, bool allowZeroLengthInputFiles, bool allowZeroLengthOutputFiles);
  virtual ~QARTransform();
  QARTransform(const QARTransform&) = delete;
  QARTransform& operator=(const QARTransform&) = delete;

  /// Ends whatever a derived transform has going on; true means success. The library never calls it.
  virtual bool cleanup() = 0;

  /// Replaces the content of `out` by what `in` becomes; may read and fill `meta`.
  ///
  /// `in` is never empty: it is the content of the file or, for a path that ends with "qvz", that path in UTF-8.
  /// Returning true with a filled `out` is success, with an empty one only if `allowZeroLengthOutputFiles()`;
  /// returning false is a failed read. An exception reaches the caller of the reader unchanged.
  virtual bool transform(const QARByteArray& in, QARByteArray& out, QARMetaData& meta) = 0;

  /// Makes `out` a copy of `in` and returns true, unless overridden. The library never calls it.
  virtual bool filter(const QARByteArray& in, QARByteArray& out);

  /// False until a derived transform says otherwise through `isSetup_`.
  bool isSetup() const;
  /// Whether an empty file is read as empty content, without calling `transform`.
  bool allowZeroLengthInputFiles() const;
  /// Whether an empty result of `transform` is a success.
  bool allowZeroLengthOutputFiles() const;
  /// The identifier, owned by the transform; "" if there is none, never null.
  const char* getId();

protected:
  /// What the accessors report. Only a constructor may change them: readers of several threads look at them.
  /// @{
  bool isSetup_ = false;
  bool allowZeroLengthInputFiles_ = true;
  bool allowZeroLengthOutputFiles_ = false;
  std::string id_;
  /// @}
};

}  // namespace Korvane::qardatainterfaces
