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

/// Chooses a reader and a transform for each path.
///
/// Names      Paths are UTF-16 and end at the first zero unit; `QARPath::fromNative` makes one from any native name.
///            A prefix "//:" is ignored; to name a file whose native path starts with it, drop the first slash. The
///            extension is the part of the last path element from its last dot on: ".gz" for "a.b/c.tar.gz",
///            ".profile" for "home/.profile", "." for "dir/", and none for "README". Extensions are compared unit for
///            unit. If several registrations have the extension, the earliest one is used.
/// Ownership  The factory owns the transforms and destroys them in the order of registration when it is destroyed.
///            The caller owns the readers; a reader with a transform must be destroyed before the factory.
/// Errors     Members may throw `std::bad_alloc` and the exceptions that they name; the factory is then unchanged.
///            `DeployedException` is in namespace `Korvane::rtxi18nutil`. For a file that does not exist or cannot be
///            opened, it has a nested `std::system_error` with the reason.
/// Threads    Distinct factories are independent. Any number of threads may call `getReader`, `getRuntimeReader` and
///            `willBeTransformed` on one factory; `addFileTypeHandler` requires that no other thread uses it.
class [[gnu::visibility("default")]] QARFileReaderFactory {
public:
  QARFileReaderFactory();
  virtual ~QARFileReaderFactory();
  QARFileReaderFactory(const QARFileReaderFactory&) = delete;
  QARFileReaderFactory& operator=(const QARFileReaderFactory&) = delete;

  /// Registers `transform` for these extensions, each written with its leading dot.
  /// The factory owns `transform` from the moment of the call and destroys it if the call fails. A registration with
  /// a null transform has no effect, nor has an extension without a dot.
  void addFileTypeHandler(const std::vector<std::u16string>& extensions, QARTransform* transform);

  /// A reader for what is at `path`. For a symbolic link it reads the text of the target; the link is not followed.
  /// For a regular file it reads the content, transformed if the extension is registered.
  ///
  /// Throws `DeployedException` with
  /// - `QARDATAINTERFACES_FILE_NOT_EXIST` if there is nothing at the path;
  /// - `QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED` if it is neither a regular file nor a symbolic link;
  /// - `QARDATAINTERFACES_FILE_OPEN_FAILED` if the file cannot be opened, or was meanwhile replaced by something
  ///   that is not a regular file.
  ///
  /// Throws `boost::filesystem::filesystem_error` if the status of the path cannot be queried. Its code is
  /// `illegal_byte_sequence` if the path cannot be converted to a native name (see `QARPath::toNative`), and its
  /// `path1()` is the path that was queried.
  std::unique_ptr<QARFileReader> getReader(const std::u16string& path);

  /// A reader chosen by the extension alone. Links are followed, and the file is opened without a status query.
  /// Devices, FIFOs, terminals and pipes (by their names in /dev or /proc) can be opened; of sockets, only standard
  /// input. Throws `DeployedException` with `QARDATAINTERFACES_FILE_OPEN_FAILED` if there is nothing at the path, if
  /// it is a directory, if it has no native name, or if it cannot be opened.
  std::unique_ptr<QARFileReader> getRuntimeReader(const std::u16string& path);

  /// A reader for `stream`, chosen by the extension of `path`, without access to the file system. The reader does not
  /// own `stream`, which must outlive it. Throws what `stream.exhausted()` throws.
  std::unique_ptr<QARFileReader> getReader(const std::u16string& path, opc::InputStream& stream);

  /// Whether the extension of `path` is registered with a transform. Does not access the file system.
  bool willBeTransformed(const std::u16string& path);

private:
  [[gnu::visibility("hidden")]] QARTransform* transformFor(const std::u16string& path) const;

  std::vector<boost::shared_ptr<QARFileHandler>> handlers_;
};

}  // namespace Korvane::qardatainterfaces
