#include "walk.hpp"

#include <algorithm>
#include <vector>

namespace qarread {
namespace {

namespace fs = std::filesystem;

// The directory entry usually has the file type, so this rarely needs a system call.
bool isDirectory(const fs::directory_entry& entry) {
  std::error_code ignored;  // opening the path will report it
  return !entry.is_symlink(ignored) && entry.is_directory(ignored);
}

struct Entry {
  fs::path name;
  bool isDirectory;
};

std::vector<Entry> list(const fs::path& directory, const Fail& fail) {
  std::vector<Entry> entries;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
       entry.increment(error))
    entries.push_back({entry->path().filename(), isDirectory(*entry)});
  if (error) fail(directory, error);
  std::sort(entries.begin(), entries.end(),
            [](const auto& a, const auto& b) { return a.name.native() < b.name.native(); });
  return entries;
}

void walkBelow(const Found& directory, const Visit& visit, const Fail& fail, const Visit& enter) {
  for (const auto& entry : list(directory.path, fail)) {
    const Found found{directory.path / entry.name, directory.name / entry.name};
    if (entry.isDirectory) {
      if (enter) enter(found);
      walkBelow(found, visit, fail, enter);
    } else {
      visit(found);
    }
  }
}

}  // namespace

void walk(const fs::path& root, const Visit& visit, const Fail& fail, const Visit& enter) {
  if (isDirectory(fs::directory_entry(root)))
    walkBelow({root, {}}, visit, fail, enter);
  else
    visit(argument(root));
}

Found argument(const fs::path& path) { return {path, path.has_filename() ? path.filename() : path}; }

}  // namespace qarread
