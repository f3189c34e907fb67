#include "openFile.hpp"

#include "input/FilePath.hpp"
#include "raise.hpp"

#include <ku/i18n/to_string.hpp>
#include <qar/qardatainterfaces/messages.hpp>

namespace Korvane::qardatainterfaces {

std::unique_ptr<InputFile> openFile(const FilePath& path, FileKind kind) {
  using qar::qardatainterfaces::QARDATAINTERFACES_FILE_OPEN_FAILED;
  auto file = std::make_unique<InputFile>(path, kind);
  if (!file->good())
    raise(QARDATAINTERFACES_FILE_OPEN_FAILED(ku::i18n::to_string(path.given()), "file is closed.failbit is set."),
          file->error());
  return file;
}

}  // namespace Korvane::qardatainterfaces
