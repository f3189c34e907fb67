#include "Descriptor.hpp"

#include <cerrno>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace packing {

void failAbout(const std::string& name) { throw std::system_error(errno, std::generic_category(), name); }

Descriptor::Descriptor(int handle, std::string name) : handle_(handle), name_(std::move(name)) {
  if (handle < 0) failAbout(name_);
}

Descriptor::~Descriptor() {
  if (handle_ >= 0) ::close(handle_);
}

void Descriptor::replace(int handle) {
  if (handle < 0) failAbout(name_);
  ::close(std::exchange(handle_, handle));
}

void Descriptor::write(const void* bytes, std::size_t size) {
  const auto* next = static_cast<const char*>(bytes);
  while (size > 0) {
    const auto count = ::write(handle_, next, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failAbout(name_);
    next += count;
    size -= static_cast<std::size_t>(count);
  }
}

void Descriptor::close() {
  if (::close(std::exchange(handle_, -1)) != 0 && errno != EINTR) failAbout(name_);
}

}  // namespace packing
