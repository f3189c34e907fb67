// A tree of files, links and directories, as the factory sees it and as the standard library does.

#include "input.hpp"
#include "support/ScriptedTransform.hpp"

#include <ku/i18n/codecvt.hpp>
#include <ku/i18n/to_string.hpp>
#include <qardatainterfaces/DeployedException.hpp>
#include <qardatainterfaces/QARFileReaderFactory.hpp>
#include <qardatainterfaces/QARPath.hpp>

#include <filesystem>
#include <fstream>

#include <unistd.h>

using namespace Korvane::qardatainterfaces;
namespace fs = std::filesystem;

namespace {

// The content, or why there is none. Nothing for what is no part of the tree, and might never end.
std::string expected(const std::u16string& path, bool runtime, const std::u16string& registered) try {
  const std::u16string name = path.c_str();
  const fs::path native = QARPath::toNative(name);
  std::error_code error;
  const auto status = runtime ? fs::status(native, error) : fs::symlink_status(native, error);
  if (fs::is_other(status)) return "";
  if (runtime && !fs::is_regular_file(status)) return "QARDATAINTERFACES_FILE_OPEN_FAILED";
  if (fs::is_symlink(status)) return "content " + fs::read_symlink(native).native();
  if (fs::is_directory(status)) return "QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED";
  if (status.type() == fs::file_type::not_found) return "QARDATAINTERFACES_FILE_NOT_EXIST";
  if (status.type() == fs::file_type::none) return "no status";
  std::ifstream file(native);
  const std::string content(std::istreambuf_iterator<char>(file), {});
  if (name.substr(name.find_last_of(u"./")) != registered) return "content " + content;
  if (content.empty()) return "error -1004";
  return "content " + (path.substr(path.size() - 3) == u"qvz" ? ku::i18n::to_string(path) : content) + "!";
} catch (const ku::i18n::CvtExceptionBase&) {  // of a name that cannot be
  return runtime ? "QARDATAINTERFACES_FILE_OPEN_FAILED" : "no status";
}

std::string found(QARFileReaderFactory& factory, const std::u16string& path, bool runtime) try {
  const auto reader = runtime ? factory.getRuntimeReader(path) : factory.getReader(path);
  const auto whole = text(reader->readAll());
  require(!reader->readError());
  if (!reader->readSucceeded()) return "error " + std::to_string(reader->lastError());
  std::string chunks;
  QARMetaData meta;
  do chunks += chunk(*reader, 5, meta);
  while (reader->more());
  require(chunks == whole || (chunks == whole.substr(0, 5) && reader->ready() == 0));  // a link has no place in it
  return "content " + whole;
} catch (const Korvane::rtxi18nutil::DeployedException& e) {
  return e.identifier();
} catch (const std::runtime_error&) {
  return "no status";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto tree = fs::temp_directory_path() / ("zrqar_trees." + std::to_string(::getpid())) / "";
  fs::create_directory(tree);
  Input input(data, size);
  std::vector<std::u16string> paths{tree.u16string()};
  // Nothing is made outside of the tree: no name leads up, and links come last, not through each other.
  for (unsigned kind = 0; !input.empty();) {
    kind = std::max(kind, input.number() % 4);
    const auto name = input.name(255);
    const auto content = input.text(input.number());
    paths.push_back(paths[0] + name);
    if (name.find(u"..") != name.npos) continue;
    std::error_code ignored;
    const auto path = tree.native() + ku::i18n::to_string(name.c_str());
    if (kind == 0) fs::create_directory(path, ignored);
    if (kind == 1) std::ofstream(path) << content;
    if (kind == 2 && name.find(u'/') == name.npos) fs::create_symlink(content.c_str(), path, ignored);
  }
  const auto& one = paths[size % paths.size()];
  const auto registered = one.substr(one.rfind(u'.'));
  QARFileReaderFactory factory;
  factory.addFileTypeHandler(
      {u"", registered},
      new ScriptedTransform([](auto& in, auto& out, auto&) { return out = QARByteArray(text(in) + "!"), true; },
                            false));
  for (const auto& path : paths)
    for (const bool runtime : {false, true})
      if (const auto result = expected(path, runtime, registered); !result.empty())
        require(found(factory, path, runtime) == result);
  fs::remove_all(tree);
  return 0;
}
