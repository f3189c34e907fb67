#pragma once

#include <qardatainterfaces/QARByteArray.hpp>
#include <qardatainterfaces/QARMetaData.hpp>

#include <memory>
#include <string>
#include <system_error>

namespace Korvane::qardatainterfaces {

class InputFile;

/// The content of one file, in chunks of the caller's size or whole. Made by a `QARFileReaderFactory`.
///
/// In chunks, right for every kind of reader:
///
///     do {
///       const auto count = reader->read(buffer, sizeof buffer);
///       if (count == QARFileReader::failed || reader->readError()) return false;
///       take(buffer, count);
///     } while (reader->more());
///
/// Whole: `reader->readAll()`, and then `reader->readSucceeded() && !reader->readError()` tells whether it is the
/// content. Do not begin that once chunk reads have met the end: a plain reader reads no more then.
///
/// Ownership  The caller owns the reader. A reader on an `opc::InputStream` refers to the stream, a transforming
///            reader to a transform of its factory: both must outlive the reader.
/// State      A file is open from construction to destruction. A failed read leaves the reader usable.
/// Errors     Opening throws `Korvane::rtxi18nutil::DeployedException`
///            (`QARDATAINTERFACES_FILE_OPEN_FAILED`), nested around the `std::system_error` that says why. Reads
///            report: a transform or a stream that fails by `lastError()`, a file that cannot be read by
///            `readError()`. To a transform, a file that cannot be read is an empty one, so only `readError()` tells
///            if it allows these. Reads throw what a caller's transform or stream throws, and `std::bad_alloc`; chunk
///            reads then go on where they were.
/// Units      Chunks are at most 2^32 - 2 bytes; content and positions are bytes in 64 bits.
/// Threads    Distinct readers are independent, on the same file too. One reader serves one thread at a time,
///            `const` members included.
class [[gnu::visibility("default")]] QARFileReader {
public:
  /// What a chunk read returns when it fails.
  static constexpr unsigned int failed = 0xFFFFFFFF;

  /// What `ready()` returns without an open file: a reader on a caller's stream has none.
  static constexpr int not_open = -1000;
  /// What `ready()` returns after a chunk read has met the end of the file, or any read that of a file that cannot be
  /// sought in; or if the file could not be read.
  static constexpr int not_good = -1001;
  /// `lastError()`: the transform failed, or gave empty content that it does not allow; or a caller's stream
  /// delivered nothing 100 times in a row without being exhausted.
  static constexpr int transform_failed = -1003;
  /// `lastError()`: the input is empty and the transform does not allow that; or, for a path that ends with "qvz",
  /// the transform failed without output.
  static constexpr int zero_length = -1004;

  /// For derived readers that read no file: no stream, empty content.
  QARFileReader();
  /// Opens the file at `path`, spelt as `QARPath` tells; a directory is no file. Whatever else can be opened is, a
  /// FIFO included, which waits for its writer.
  explicit QARFileReader(const std::u16string& path);
  virtual ~QARFileReader();
  QARFileReader(const QARFileReader&) = delete;
  QARFileReader& operator=(const QARFileReader&) = delete;

  /// The identifier of the transform that the reader applies; "" if it applies none. Never null; valid as long as
  /// the transform, or always.
  virtual const char* getTransformId() = 0;

  /// Places at most `size` bytes of the content at `buffer` and returns how many.
  ///
  /// A plain reader of a file returns fewer than `size` only at the end; it notices the end, and turns `more()`
  /// false, with the read that tries to go past it. On a stream it returns what one read of the stream gives, which
  /// may be nothing before the end. A transforming reader runs its transform with the first read, before which
  /// `more()` is false, and turns `more()` false with the read that delivers the last byte. A symbolic-link reader
  /// delivers the start of the target each time and never has more.
  ///
  /// Returns `failed` if a plain reader's file cannot be read, or if the transform fails; the bytes at `buffer` are
  /// then unspecified. Stop on it: `more()` need not turn false. A transforming reader whose file cannot be read goes
  /// on with what it has, as a rule nothing, and a symbolic-link reader with the target that it read last: ask
  /// `readError()`.
  /// Requires: `buffer` has room for `size` bytes; it may be null if `size` is 0.
  virtual unsigned int read(void* buffer, unsigned int size) = 0;
  /// The same; a transforming reader has its transform fill `meta` with the read that runs it. Others leave it.
  virtual unsigned int read(void* buffer, unsigned int size, QARMetaData& meta);

  /// The whole content. Chunk reads afterwards go on where they were, in the file as it is then.
  ///
  /// A plain reader reads a file anew from its start each time, as long as `ready()` is 0: once a chunk read has met
  /// the end, what was read whole before stays. A file that cannot be sought in, such as a pipe, is read to its end
  /// from where it stands, and then has met it. Of a caller's stream, the first call that finds anything gathers what
  /// chunk reads have left. If the file cannot be read or the stream stands still, the content stays what it was.
  ///
  /// A transforming reader returns what its transform made of the whole, also after chunk reads; after a failure,
  /// whatever the transform left. `readAll()` on a stream gathers and transforms anew each time.
  ///
  /// The array belongs to the reader and changes with a later read of the whole.
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

  /// Why the file could not be read on, or the link not be read at the last attempt: the system's code, in
  /// `std::system_category()`. Empty if it could, which includes that its end was met, and for a reader on a stream.
  std::error_code readError() const noexcept;

protected:
  /// Reads `file`, which was opened at `path`.
  [[gnu::visibility("hidden")]] QARFileReader(const std::u16string& path, std::unique_ptr<InputFile> file);

  /// The path as given; empty without one.
  std::u16string path_;
  /// The open file, if the reader has one. Its type is the library's own.
  std::unique_ptr<InputFile> file_;
  /// What `readAll` returns.
  QARByteArray content_;
  /// What `more()` reports.
  bool more_ = false;
  /// What `lastError()` reports; each read begins by setting it to 0.
  int lastError_ = 0;
};

}  // namespace Korvane::qardatainterfaces
