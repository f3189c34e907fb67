#pragma once

#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <stdlib.h>
#include <unistd.h>

namespace benchmarks {

/// A file that exists as long as this object.
class TemporaryFile {
public:
  explicit TemporaryFile(std::string_view content) : size_(content.size()) {
    const int handle = ::mkstemp(name_.data());
    if (handle < 0) throw std::runtime_error("no temporary file can be made");
    ::close(handle);
    std::ofstream out(name_, std::ios::binary);
    if (!out.write(content.data(), static_cast<std::streamsize>(size_)).flush()) {
      ::unlink(name_.c_str());
      throw std::runtime_error("the temporary file cannot be written");
    }
  }
  ~TemporaryFile() { ::unlink(name_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& name() const noexcept { return name_; }
  std::u16string path() const { return {name_.begin(), name_.end()}; }
  std::size_t size() const noexcept { return size_; }

private:
  std::string name_ = "/tmp/zrqar-XXXXXX";
  std::size_t size_;
};

}  // namespace benchmarks
