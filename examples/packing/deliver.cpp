#include "deliver.hpp"

#include <memory>
#include <stdexcept>
#include <system_error>

namespace packing {

using Korvane::qardatainterfaces::QARFileReader;

void checkRead(QARFileReader& reader, const std::string& name) {
  if (const auto reason = reader.readError()) throw std::system_error(reason, name);
  if (!reader.readSucceeded()) throw std::runtime_error(name + ": cannot be converted");
}

void deliver(QARFileReader& reader, const std::string& name, Korvane::qardatainterfaces::QARMetaData& meta,
             const std::function<void(const void* bytes, std::size_t size)>& take) {
  constexpr unsigned int chunk = 256 * 1024;
  const auto buffer = std::make_unique_for_overwrite<unsigned char[]>(chunk);
  do {
    const auto count = reader.read(buffer.get(), chunk, meta);
    checkRead(reader, name);
    if (count == QARFileReader::failed) throw std::runtime_error(name + ": cannot be read");
    take(buffer.get(), count);
  } while (reader.more());
}

}  // namespace packing
