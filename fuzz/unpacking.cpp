// Unpacks any bytes as an archive. All files that it creates must be in the directory.

#include "input.hpp"
#include "support/CapturedOutput.hpp"
#include "unpackArchive.hpp"

#include <qardatainterfaces/UTF8ToLCPTransform.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Requires that no link in the tree leads out of it.
void inspect(const fs::path& tree) {
  for (const auto& entry : fs::recursive_directory_iterator(tree)) {
    if (!entry.is_symlink()) continue;
    const auto target = fs::read_symlink(entry.path());
    require(target.is_relative());
    const auto real = fs::weakly_canonical(entry.path().parent_path() / target.native().substr(0, 200)).native();
    require(real.starts_with(tree.native()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto place =
      fs::canonical(fs::temp_directory_path()) / ("zrqar_unpacking." + std::to_string(::getpid()));
  fs::create_directory(place);
  const auto archive = place / "archive", tree = place / "tree";
  std::ofstream(archive, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  Korvane::qardatainterfaces::QARFileReaderFactory factory;
  factory.addFileTypeHandler({u".txt"}, new Korvane::qardatainterfaces::UTF8ToLCPTransform);
  const CapturedOutput output;
  bool unpacked = true;
  try {
    packing::unpackArchive(archive, tree, {1 << 20, 200}, factory, [](auto&, auto&) {});
  } catch (const std::exception&) {
    unpacked = false;
  }
  require(fs::exists(tree) == unpacked);
  require(std::distance(fs::directory_iterator(place), {}) == (unpacked ? 2 : 1));
  if (unpacked) try {
      inspect(tree);
    } catch (const fs::filesystem_error& e) {  // circular links
      require(e.code() == std::errc::too_many_symbolic_link_levels);
    }
  fs::remove_all(place);
  return 0;
}
