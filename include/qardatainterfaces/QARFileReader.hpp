#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARMetaData.hpp>

#include <memory>
#include <string>
#include <system_error>

namespace Korvane::qardatainterfaces {

class InputFile;

/// Reads the content of one file, in chunks of the caller's size or as a whole. Made by a `QARFileReaderFactory`.
///
/// This loop reads in chunks and works for every kind of reader:
///
///     do {
///       const auto count = reader->read(buffer, sizeof buffer);
///       if (count == QARFileReader::failed || reader->readError()) return false;
///       take(buffer, count);
///     } while (reader->more());
///
/// To read the whole content, call `reader->readAll()`. It has succeeded if
/// `reader->readSucceeded() && !reader->readError()`. Once chunk reads have reached the end, a plain reader reads
/// nothing more, and a first `readAll()` returns an empty array.
///
/// Ownership  The caller owns the reader. A reader on an `opc::InputStream` refers to the stream, and a transforming
///            reader to a transform of its factory: both must outlive the reader.
/// State      The file is open from construction to destruction. The reader stays usable after a failed read.
/// Errors     Opening throws `Korvane::rtxi18nutil::DeployedException`
///            (`QARDATAINTERFACES_FILE_OPEN_FAILED`) with a nested `std::system_error` that has the reason. Reads do
///            not throw failures of their own: `lastError()` reports a transform or a stream that failed, and
///            `readError()` a file that could not be read. A transforming reader treats a file that it cannot read as
///            empty. If the transform allows empty input, only `readError()` reports the failure. Reads throw what
///            a caller's transform or stream throws, `std::bad_alloc`, and, if the path ends with "qvz" and its
///            status cannot be queried, `std::system_error`. After an exception, chunk reads continue at the same
///            position, and the next read runs the transform again; nothing that was taken from a stream is lost.
/// Units      Chunks are at most 2^32 - 2 bytes; content and positions are bytes in 64 bits.
/// Threads    Distinct readers are independent, even on the same file. One reader may be used by one thread at a
///            time, `const` members included.
class [[gnu::visibility("default")]] QARFileReader {
public:
  /// What a chunk read returns when it fails.
  static constexpr unsigned int failed = 0xFFFFFFFF;

  /// `ready()`: the reader has no open file. Always so for a reader on a caller's stream.
  static constexpr int not_open = -1000;
  /// `ready()`: the file could not be read; or a chunk read reached the end of the file; or any read reached the end
  /// of a file that is not seekable.
  static constexpr int not_good = -1001;
  /// `lastError()`: the transform failed, or its output is empty and it does not allow that; or a caller's stream
  /// stalled, which means that it delivered nothing 100 times in a row without being exhausted.
  static constexpr int transform_failed = -1003;
  /// `lastError()`: the input is empty and the transform does not allow that; or, for a path that ends with "qvz",
  /// the transform failed and left no output.
  static constexpr int zero_length = -1004;

  /// For derived readers that read no file: no open file, empty content.
  QARFileReader();
  /// Opens the file at `path`, which has the form that `QARPath::fromNative` returns. Refuses a directory. Opening a
  /// FIFO waits for a writer.
  explicit QARFileReader(const std::u16string& path);
  virtual ~QARFileReader();
  QARFileReader(const QARFileReader&) = delete;
  QARFileReader& operator=(const QARFileReader&) = delete;

  /// The identifier of the transform that the reader applies; "" if it applies none. Never null; valid as long as
  /// the transform, or as long as the program if there is none.
  virtual const char* getTransformId() = 0;

  /// Copies at most `size` bytes of the content to `buffer` and returns how many.
  ///
  /// A plain reader of a file returns fewer than `size` bytes only at the end. `more()` becomes false with the read
  /// that tries to go past the end. On a stream, a plain reader returns the result of one read of the stream, which
  /// may be nothing before the end.
  ///
  /// A transforming reader runs its transform in the first read. `more()` is false before that read and becomes false
  /// again with the read that delivers the last byte.
  ///
  /// A symbolic-link reader delivers the start of the target each time; its `more()` is always false.
  ///
  /// Returns `failed` if a plain reader's file cannot be read, or if the transform fails. The bytes at `buffer` are
  /// then unspecified, and `more()` may stay true: stop reading. A transforming reader whose file cannot be read
  /// does not fail here: it continues with the content it has, usually none. A symbolic-link reader that cannot read
  /// the link continues with the last target that it read. Check `readError()` in both cases.
  /// Requires: `buffer` has room for `size` bytes; it may be null if `size` is 0.
  virtual unsigned int read(void* buffer, unsigned int size) = 0;
  /// The same. The read that runs the transform of a transforming reader passes `meta` to it. Other readers do not
  /// use `meta`.
  virtual unsigned int read(void* buffer, unsigned int size, QARMetaData& meta);

  /// The whole content. Chunk reads after it continue at their position, in the file as it is then.
  ///
  /// A plain reader reads the file again from its start at each call, as long as `ready()` is 0. Once a chunk read
  /// has reached the end, calls return the content of the last whole read. A file that is not seekable, such as a
  /// pipe, is read from its current position to its end; `ready()` then is `not_good`. On a caller's stream, the
  /// first call that finds any data reads what chunk reads have left; later calls return the same content. If the
  /// file cannot be read or the stream stalls, the content is unchanged.
  ///
  /// A transforming reader returns the output of its transform for the whole content, even after chunk reads; after a
  /// failure, whatever the transform left. On a stream, each `readAll()` gathers what is left of the stream and runs
  /// the transform on it. If nothing is left, the content and `lastError()` are unchanged.
  ///
  /// The array belongs to the reader; a later whole read changes it.
  virtual QARByteArray& readAll();
  /// The same. A transforming reader passes `meta` to its transform, and runs it only if it has not yet succeeded.
  virtual QARByteArray& readAll(QARMetaData & meta);

  /// Whether a chunk read may still deliver data.
  virtual bool more();

  /// How the last read ended: 0 for success, `transform_failed` or `zero_length`.
  virtual int lastError();
  /// Whether `lastError()` is 0.
  virtual bool readSucceeded();

  /// 0 if the file is open and can be read further, else `not_open` or `not_good`. Always 0 for a symbolic-link
  /// reader.
  virtual int ready();

  /// Why the file could not be read, or why the last attempt to read the link failed: the system's error code, in
  /// `std::system_category()`. Empty if there was no error, at the end of the file, and for a reader on a stream.
  std::error_code readError() const noexcept;

protected:
  /// Reads `file`, which was opened at `path`.
  [[gnu::visibility("hidden")]] QARFileReader(const std::u16string& path, std::unique_ptr<InputFile> file);

  /// The path as given; empty without one.
  std::u16string path_;
  /// The open file, if the reader has one. Its type is internal to the library.
  std::unique_ptr<InputFile> file_;
  /// What `readAll` returns.
  QARByteArray content_;
  /// What `more()` reports.
  bool more_ = false;
  /// What `lastError()` reports. The reading members of this class set it to 0 first.
  int lastError_ = 0;
};

}  // namespace Korvane::qardatainterfaces
