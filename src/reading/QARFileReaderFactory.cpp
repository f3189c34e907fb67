#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include "QARFileHandler.hpp"
#include "QARFileReaderWithTransform.hpp"
#include "QARFileReaderWithoutTransform.hpp"
#include "QARSymbolicLinkReader.hpp"
#include "input/FilePath.hpp"
#include "openFile.hpp"
#include "raise.hpp"

#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <opc/InputStream.hpp>
#include <qar/qardatainterfaces/messages.hpp>
#include <qardatainterfaces/DeployedException.hpp>

#include <boost/filesystem/exception.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <cerrno>
#include <system_error>
#include <utility>

namespace Korvane::qardatainterfaces {
namespace {

namespace fs = boost::filesystem;
namespace messages = qar::qardatainterfaces;
using ku::i18n::to_string;

struct Status {
  fs::file_type type;
  boost::system::error_code error;  // the reason, if the type is file_not_found or status_error
};

// A single query answers whether the path is a link, whether it exists and whether it is a regular file.
Status statusOf(const FilePath& path) {
  constexpr auto query = "boost::filesystem::is_symlink";
  Status status;
  try {
    status.type = fs::symlink_status(path.native(), status.error).type();
  } catch (const ku::i18n::CvtExceptionBase&) {
    status.error.assign(EILSEQ, boost::system::system_category());
    throw fs::filesystem_error(query, to_string(std::u16string(path.effective())), status.error);
  }
  if (status.type == fs::status_error) throw fs::filesystem_error(query, path.native(), status.error);
  return status;
}

std::unique_ptr<QARFileReader> makeReader(const FilePath& path, FileKind kind, QARTransform* transform) {
  auto file = openFile(path, kind);
  if (transform != nullptr)
    return std::make_unique<QARFileReaderWithTransform>(path.given(), std::move(file), *transform);
  return std::make_unique<QARFileReaderWithoutTransform>(path.given(), std::move(file));
}

}  // namespace

QARFileReaderFactory::QARFileReaderFactory() = default;
QARFileReaderFactory::~QARFileReaderFactory() = default;

void QARFileReaderFactory::addFileTypeHandler(const std::vector<std::u16string>& extensions,
                                              QARTransform* transform) {
  boost::shared_ptr<QARTransform> owner(transform);
  handlers_.push_back(boost::make_shared<QARFileHandler>(extensions, std::move(owner)));
}

std::unique_ptr<QARFileReader> QARFileReaderFactory::getReader(const std::u16string& path) {
  const FilePath file(path);
  const auto status = statusOf(file);
  switch (status.type) {
    case fs::symlink_file: return std::make_unique<QARSymbolicLinkReader>(path);
    case fs::regular_file: return makeReader(file, FileKind::regular, transformFor(path));
    case fs::file_not_found:
      raise(messages::QARDATAINTERFACES_FILE_NOT_EXIST(to_string(path)),
            std::error_code(status.error.value(), std::system_category()));
    default:
      throw rtxi18nutil::DeployedException(messages::QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED(to_string(path)));
  }
}

std::unique_ptr<QARFileReader> QARFileReaderFactory::getRuntimeReader(const std::u16string& path) {
  return makeReader(FilePath(path), FileKind::any, transformFor(path));
}

std::unique_ptr<QARFileReader> QARFileReaderFactory::getReader(const std::u16string& path, opc::InputStream& stream) {
  if (auto* const transform = transformFor(path))
    return std::make_unique<QARFileReaderWithTransform>(stream, *transform);
  return std::make_unique<QARFileReaderWithoutTransform>(stream);
}

bool QARFileReaderFactory::willBeTransformed(const std::u16string& path) { return transformFor(path) != nullptr; }

QARTransform* QARFileReaderFactory::transformFor(const std::u16string& path) const {
  const FilePath file(path);
  for (const auto& handler : handlers_)
    if (auto* const transform = handler->getTransform(file)) return transform;
  return nullptr;
}

}  // namespace Korvane::qardatainterfaces
