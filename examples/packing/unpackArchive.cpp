#include "unpackArchive.hpp"

#include "../deliver.hpp"
#include "NewTree.hpp"
#include "deliverEntry.hpp"

namespace packing {
namespace {

class ToTree final : public EntryConsumer {
public:
  ToTree(NewTree& tree, const Remark& remark) : tree_(tree), remark_(remark) {}

  void directory(const std::string& name) override {
    if (!name.empty()) tree_.makeDirectory(name);
  }
  void file(const std::string& name, bool executable, Korvane::qardatainterfaces::QARFileReader& reader) override {
    auto file = tree_.makeFile(name, executable);
    Korvane::qardatainterfaces::QARMetaData meta;
    deliverEntry(reader, name, meta, [&](const void* bytes, std::size_t size) { file.write(bytes, size); });
    if (const auto loss = qarread::lossOf(reader, meta); !loss.empty()) remark_(name, loss);
    file.close();
  }
  void link(const std::string& name, const std::string& target) override { tree_.makeLink(name, target); }
  void hardLink(const std::string& name, const std::string& target) override { tree_.makeHardLink(name, target); }

private:
  NewTree& tree_;
  const Remark& remark_;
};

}  // namespace

std::optional<Description> unpackArchive(const std::string& archive, const std::string& directory,
                                         const Limits& limits,
                                         Korvane::qardatainterfaces::QARFileReaderFactory& factory,
                                         const Remark& remark) {
  NewTree tree(directory);
  ToTree consumer(tree, remark);
  auto description = readArchive(archive, limits, factory, consumer);
  tree.commit();
  return description;
}

}  // namespace packing
