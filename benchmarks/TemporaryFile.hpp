#pragma once

#include <fstream>
#include <stdexcept>
#include <string>

#include <stdlib.h>
#include <unistd.h>

namespace benchmarks {

/// A file that exists as long as this object.
class TemporaryFile {
public:
  explicit TemporaryFile(const std::string& content) {
    const int handle = ::mkstemp(name_.data());
    if (handle >= 0) ::close(handle);
    if (!(std::ofstream(name_, std::ios::binary) << content << std::flush))
      throw std::runtime_error("the temporary file cannot be written");
  }
  ~TemporaryFile() { ::unlink(name_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& name() const noexcept { return name_; }
  std::u16string path() const { return {name_.begin(), name_.end()}; }

private:
  std::string name_ = "/tmp/zrqar-XXXXXX";
};

}  // namespace benchmarks
