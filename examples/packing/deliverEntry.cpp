#include "deliverEntry.hpp"

#include "../deliver.hpp"

#include <memory>

namespace packing {
namespace {

template <class Work>
void about(const std::string& name, Work work) try {
  work();
} catch (const qarread::ReadFailure& failure) {
  throw std::runtime_error(name + ": " + failure.what());
}

}  // namespace

using Korvane::qardatainterfaces::QARFileReader;
using Korvane::qardatainterfaces::QARMetaData;

void checkEntry(QARFileReader& reader, const std::string& name, const QARMetaData& meta) {
  about(name, [&] { qarread::checkRead(reader, meta); });
}

void deliverEntry(QARFileReader& reader, const std::string& name, QARMetaData& meta,
                  const std::function<void(const void* bytes, std::size_t size)>& take) {
  constexpr std::size_t chunk = 256 * 1024;
  const auto buffer = std::make_unique_for_overwrite<unsigned char[]>(chunk);
  about(name, [&] { qarread::deliver(reader, meta, {buffer.get(), chunk}, take); });
}

}  // namespace packing
