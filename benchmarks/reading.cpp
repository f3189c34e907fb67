#include "Report.hpp"
#include "TemporaryFile.hpp"
#include "corpora.hpp"
#include "measures.hpp"

#include <qardatainterfaces/QARFileReaderFactory.hpp>

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace benchmarks {
namespace {

using Korvane::qardatainterfaces::QARFileReader;
using Korvane::qardatainterfaces::QARFileReaderFactory;

void deliver(const void* bytes, std::size_t size, std::string* result) {
  if (result != nullptr) result->append(static_cast<const char*>(bytes), size);
}

void check(bool good) {
  if (!good) throw std::runtime_error("the file cannot be read");
}

std::size_t read(int handle, char* to, std::size_t size) {
  const auto count = ::read(handle, to, size);
  check(count >= 0);
  return static_cast<std::size_t>(count);
}

std::shared_ptr<TemporaryFile> file_of(std::size_t size) {
  return std::make_shared<TemporaryFile>(corpus("ascii", "UTF-8", size));
}

Contest in_chunks(std::size_t size, unsigned chunk, Goal of_read, Goal of_stream) {
  const auto file = file_of(size);
  const std::shared_ptr<char[]> buffer(new char[chunk]);
  char* const to = buffer.get();
  const auto ours = [=, factory = std::make_shared<QARFileReaderFactory>()](std::string* result) {
    const auto reader = factory->getRuntimeReader(file->path());
    while (reader->more()) {
      const auto count = reader->read(buffer.get(), chunk);
      check(count != QARFileReader::failed);
      deliver(to, count, result);
    }
  };
  const auto system = [=](std::string* result) {
    const int handle = ::open(file->name().c_str(), O_RDONLY | O_CLOEXEC);
    while (const auto count = read(handle, to, chunk)) deliver(to, count, result);
    ::close(handle);
  };
  const auto stream = [=](std::string* result) {
    std::ifstream in(file->name(), std::ios::binary);
    while (in) {
      in.read(to, chunk);
      deliver(to, static_cast<std::size_t>(in.gcount()), result);
    }
    check(in.eof());
  };
  const auto stdio = [=](std::string* result) {
    std::FILE* const in = std::fopen(file->name().c_str(), "rbe");
    check(in != nullptr);
    while (const auto count = ::fread_unlocked(to, 1, chunk, in)) deliver(to, count, result);
    check(::ferror_unlocked(in) == 0);
    std::fclose(in);
  };
  return {size,
          {{"ours", ours},
           {"read(2)", system, of_read},
           {"std::ifstream", stream, of_stream},
           {"fread_unlocked", stdio}}};
}

/// The cheapest correct way to read a whole file into memory.
void read_by_hand(const TemporaryFile& file, std::string* result) {
  const int handle = ::open(file.name().c_str(), O_RDONLY | O_CLOEXEC);
  struct stat found {};
  check(::fstat(handle, &found) == 0);
  const auto size = static_cast<std::size_t>(found.st_size);
  const std::unique_ptr<char[]> bytes(new char[size]);
  std::size_t placed = 0;
  for (std::size_t count = 1; placed < size && count > 0; placed += count)
    count = read(handle, bytes.get() + placed, size - placed);
  ::close(handle);
  deliver(bytes.get(), placed, result);
}

using Way = std::unique_ptr<QARFileReader> (QARFileReaderFactory::*)(const std::u16string&);
constexpr Way inspecting = &QARFileReaderFactory::getReader;
constexpr Way runtime = &QARFileReaderFactory::getRuntimeReader;

void read_whole(QARFileReaderFactory& factory, Way way, const TemporaryFile& file, std::string* result) {
  const auto reader = (factory.*way)(file.path());
  const auto& content = reader->readAll();
  deliver(content.begin(), content.size(), result);
}

Contest whole(std::size_t size, Way way, double goal) {
  const auto file = file_of(size);
  const auto ours = [=](std::string* result) {
    QARFileReaderFactory factory;
    read_whole(factory, way, *file, result);
  };
  const auto by_hand = [=](std::string* result) { read_by_hand(*file, result); };
  return {size, {{"ours", ours}, {"by hand", by_hand, {.time_at_most = goal}}}};
}

double calls_of(Way way) {
  QARFileReaderFactory factory;
  const auto file = file_of(4 * KiB);
  return static_cast<double>(system_calls_of([&] { read_whole(factory, way, *file, nullptr); }).size());
}

double memory_of_whole_read() {
  QARFileReaderFactory factory;
  const auto file = file_of(64 * MiB);
  const auto peak = peak_memory_of([&] { read_whole(factory, inspecting, *file, nullptr); });
  return (static_cast<double>(peak) - 64 * KiB) / (64 * MiB);
}

}  // namespace

void run_reading(Report& report) {
  const auto chunks = [&](const std::string& chunk, std::size_t file, unsigned size, double of_read,
                          double of_stream) {
    report.contest("read, chunks of " + chunk,
                   [=] { return in_chunks(file, size, {.time_at_most = of_read}, {.time_at_most = of_stream}); });
  };
  chunks("1 MiB", 16 * MiB, MiB, 1.02, 0);
  chunks("64 KiB", 16 * MiB, 64 * KiB, 1.02, 0);
  chunks("4 KiB", 16 * MiB, 4 * KiB, 0.92, 0.75);
  chunks("256 B", MiB, 256, 0.09, 0.55);
  chunks("16 B", MiB, 16, 0.09, 0.55);
  report.contest("read, whole file of 1 MiB", [] { return whole(MiB, runtime, 1.03); });
  report.contest("read, whole file of 16 MiB", [] { return whole(16 * MiB, runtime, 1.03); });
  report.contest("read, whole file of 64 MiB", [] { return whole(64 * MiB, runtime, 0.45); });
  report.contest("read, 4 KiB by getReader", [] { return whole(4 * KiB, inspecting, 1.4); });
  report.measure("read, 4 KiB by getReader, system calls", 5, [] { return calls_of(inspecting); });
  report.measure("read, 4 KiB by getRuntimeReader, system calls", 4, [] { return calls_of(runtime); });
  report.measure("read, whole, peak memory less 64 KiB / size", 1.01, memory_of_whole_read);
}

}  // namespace benchmarks
