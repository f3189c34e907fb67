#pragma once

#include "input/InputFile.hpp"

#include <memory>

namespace Korvane::qardatainterfaces {

/// Opens the file of a reader. Raises `QARDATAINTERFACES_FILE_OPEN_FAILED` with the reason as a nested exception.
std::unique_ptr<InputFile> openFile(const FilePath& path, FileKind kind);

}  // namespace Korvane::qardatainterfaces
