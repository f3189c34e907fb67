#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARMetaData.hpp>

#include <memory>
#include <string>

namespace Korvane::qardatainterfaces {

class InputFile;
class FilePath;
enum class FileKind : bool;

/// The content of one file, in chunks of the caller's size or whole. Made by a `QARFileReaderFactory`.
///
/// Ownership  The caller owns the reader. A reader on an `opc::InputStream` refers to the stream, a transforming
///            reader to a transform of its factory: both must outlive the reader.
/// State      Reads report by their result, `lastError()` and `readSucceeded()`; a failed read leaves the reader
///            usable. A file is open from construction to destruction.
/// Errors     Opening throws `Korvane::rtxi18nutil::DeployedException`
///            (`QARDATAINTERFACES_FILE_OPEN_FAILED`). Reads throw what a caller's transform or stream throws,
///            and `std::bad_alloc`; chunk reads then go on where they were, or fail.
/// Units      Chunks are at most 2^32 - 2 bytes; content and positions are bytes in 64 bits.
/// Threads    Distinct readers are independent, on the same file too. One reader serves one thread at a time,
///            `const` members included.
class [[gnu::visibility("default")]] QARFileReader {
public:
  /// What a chunk read returns when it fails.
  static constexpr unsigned int failed = 0xFFFFFFFF;

  /// What `ready()` returns without an open file: a reader on a caller's stream has none.
  static constexpr int not_open = -1000;
  /// What `ready()` returns after a plain chunk read has met the end, or the file could not be read.
  static constexpr int not_good = -1001;
  /// `lastError()`: the transform failed, or gave empty content that it does not allow; or a caller's stream
  /// delivered nothing 100 times in a row without being exhausted.
  static constexpr int transform_failed = -1003;
  /// `lastError()`: the input is empty and the transform does not allow that; or, for a path that ends with "qvz",
  /// the transform failed without output.
  static constexpr int zero_length = -1004;

  /// For derived readers that read no file: no stream, empty content.
  QARFileReader();
  /// Opens the file at `path`; a directory is no file. Whatever else can be opened is, a FIFO included, which waits
  /// for its writer.
  explicit QARFileReader(const std::u16string& path);
  virtual ~QARFileReader();
  QARFileReader(const QARFileReader&) = delete;
  QARFileReader& operator=(const QARFileReader&) = delete;

  /// The identifier of the transform that the reader applies; "" if it applies none. Never null; valid as long as
  /// the transform, or always.
  virtual const char* getTransformId() = 0;

  /// Places at most `size` bytes of the content at `buffer` and returns how many.
  ///
  /// A plain reader returns fewer than `size` only at the end; it notices the end, and turns `more()` false, with
  /// the read that tries to go past it. A transforming reader runs its transform with the first read, before which
  /// `more()` is false, and turns `more()` false with the read that delivers the last byte. A symbolic-link reader
  /// delivers the start of the target each time and never has more.
  ///
  /// Returns `failed` if the file cannot be read or the transform fails; the bytes at `buffer` are then
  /// unspecified. Stop on it: `more()` need not turn false.
  /// Requires: `buffer` has room for `size` bytes; it may be null if `size` is 0.
  virtual unsigned int read(void* buffer, unsigned int size) = 0;
  /// The same; a transforming reader has its transform fill `meta` with the read that runs it. Others leave it.
  virtual unsigned int read(void* buffer, unsigned int size, QARMetaData& meta);

  /// The whole content, from its start; chunk reads afterwards go on where they were. After a failure it is what it
  /// was before; see `lastError()` and `ready()`. The array belongs to the reader and changes with a later read of
  /// the whole.
  ///
  /// A file is read anew each time while the stream is good, that is, until a chunk read has met the end. A stream
  /// of the caller's is gathered to its end by the first call of a plain reader, and by each `readAll()` of a
  /// transforming one.
  virtual QARByteArray& readAll();
  /// The same; a transforming reader runs its transform only if none has succeeded yet, and has it fill `meta`.
  virtual QARByteArray& readAll(QARMetaData & meta);

  /// Whether a chunk read may still deliver data.
  virtual bool more();

  /// How the last read ended: 0 for success, `transform_failed` or `zero_length`.
  virtual int lastError();
  /// Whether `lastError()` is 0.
  virtual bool readSucceeded();

  /// 0 if the file can be read on, else `not_open` or `not_good`. A symbolic-link reader is always ready.
  virtual int ready();

protected:
  /// Opens `path`, which must be of that kind.
  [[gnu::visibility("hidden")]] QARFileReader(const FilePath& path, FileKind kind);

  /// The path as given; empty without one.
  std::u16string path_;
  /// The open file, if the reader has one. Its type is the library's own.
  std::unique_ptr<InputFile> stream_;
  /// What `readAll` returns.
  QARByteArray content_;
  /// What `more()` reports.
  bool more_ = false;
  /// What `lastError()` reports; each read begins by setting it to 0.
  int lastError_ = 0;
};

}  // namespace Korvane::qardatainterfaces
