#pragma once

#include <qardatainterfaces/QARFileReader.hpp>
#include <qardatainterfaces/QARTransform.hpp>

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace opc {
class InputStream;
}

namespace Korvane::qardatainterfaces {

class QARFileHandler;

/// Picks the reader for each path, and the transform that goes with it.
///
/// Names      Paths are UTF-16, taken as they are up to the first zero unit; `QARPath` makes one of any name that the
///            system has. A mark "//:" at the start is left out: of a name that begins so, drop the first slash. The
///            extension of a path is that part of its last element that begins with the last dot: ".gz" of
///            "a.b/c.tar.gz", ".profile" of "home/.profile", "." of "dir/", none of "README". It must equal a
///            registered extension unit for unit; the earliest registration that has it wins.
/// Ownership  The factory owns the transforms and destroys them when it is destroyed, in the order of their
///            registration. Readers belong to the caller; a reader with a transform must be destroyed before the
///            factory.
/// Errors     Each failure throws; a failed call leaves the factory as it was. Besides
///            `Korvane::rtxi18nutil::DeployedException` there is `std::bad_alloc`. An exception for a file that is
///            not there or cannot be opened is nested around the `std::system_error` that says why.
/// Threads    Distinct factories are independent. Any number of threads may ask one factory for readers and
///            predictions; `addFileTypeHandler` needs it alone.
class [[gnu::visibility("default")]] QARFileReaderFactory {
public:
  QARFileReaderFactory();
  virtual ~QARFileReaderFactory();
  QARFileReaderFactory(const QARFileReaderFactory&) = delete;
  QARFileReaderFactory& operator=(const QARFileReaderFactory&) = delete;

  /// Has files with one of these extensions, each with its leading dot, go through `transform` from now on.
  /// The factory owns `transform` from the call on, and destroys it if the call fails. A null transform, and an
  /// extension without a dot, never match.
  void addFileTypeHandler(const std::vector<std::u16string>& extensions, QARTransform* transform);

  /// A reader for what is at `path`: the target text of a symbolic link, which is not followed, or the content of a
  /// regular file, transformed if the extension is registered.
  ///
  /// Throws `QARDATAINTERFACES_FILE_NOT_EXIST`, `QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED` if it is neither,
  /// `QARDATAINTERFACES_FILE_OPEN_FAILED`, also if something else has meanwhile taken the place of the file; and
  /// `boost::filesystem::filesystem_error` if its kind cannot be asked, `illegal_byte_sequence` if no name has this
  /// path (see `QARPath::toNative`). Its `path1()` is the path that was asked for.
  std::unique_ptr<QARFileReader> getReader(const std::u16string& path);

  /// A reader chosen by the extension alone; links are followed, and nothing but opening looks at the file. A FIFO, a
  /// terminal and, by its name in /dev or /proc, a pipe are opened too; of sockets, the standard input.
  /// Throws `QARDATAINTERFACES_FILE_OPEN_FAILED`, for a directory too.
  std::unique_ptr<QARFileReader> getRuntimeReader(const std::u16string& path);

  /// A reader for `stream`, chosen by the extension of `path`; the file system is not asked. `stream` is not owned
  /// and must outlive the reader.
  std::unique_ptr<QARFileReader> getReader(const std::u16string& path, opc::InputStream& stream);

  /// Whether the extension of `path` is registered with a transform. The file system is not asked.
  bool willBeTransformed(const std::u16string& path);

private:
  [[gnu::visibility("hidden")]] QARTransform* transformFor(const std::u16string& path) const;

  std::vector<boost::shared_ptr<QARFileHandler>> handlers_;
};

}  // namespace Korvane::qardatainterfaces
