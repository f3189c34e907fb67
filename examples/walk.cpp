#include "walk.hpp"

#include <algorithm>
#include <vector>

namespace qarread {
namespace {

namespace fs = std::filesystem;

bool isDirectory(const fs::path& path) {
  std::error_code ignored;  // whoever opens the path will meet it again
  return fs::symlink_status(path, ignored).type() == fs::file_type::directory;
}

std::vector<fs::path> list(const fs::path& directory, const Fail& fail) {
  std::vector<fs::path> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
       entry.increment(error))
    names.push_back(entry->path().filename());
  if (error) fail(directory, error);
  std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return a.native() < b.native(); });
  return names;
}

void walkBelow(const Found& directory, const Visit& visit, const Fail& fail) {
  for (const auto& name : list(directory.path, fail)) {
    const Found found{directory.path / name, directory.name / name};
    if (isDirectory(found.path))
      walkBelow(found, visit, fail);
    else
      visit(found);
  }
}

}  // namespace

void walk(const fs::path& root, const Visit& visit, const Fail& fail) {
  if (isDirectory(root))
    walkBelow({root, {}}, visit, fail);
  else
    visit(argument(root));
}

Found argument(const fs::path& path) { return {path, path.has_filename() ? path.filename() : path}; }

}  // namespace qarread
