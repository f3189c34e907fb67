#pragma once

#include <cstddef>
#include <string>

namespace packing {

/// An open file or directory; closed with the object.
class Descriptor {
public:
  /// `handle` is the result of `open` or a similar call. If it is negative, throws `std::system_error` for `errno`,
  /// with `name`, like all failures.
  Descriptor(int handle, std::string name);
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const noexcept { return handle_; }
  const std::string& name() const noexcept { return name_; }

  /// Closes the current descriptor and takes the new one, like the constructor.
  void replace(int handle);

  void write(const void* bytes, std::size_t size);

  /// Some file systems report a failed write only here.
  void close();

private:
  int handle_;
  std::string name_;
};

/// Throws `std::system_error` for `errno`, with `name`.
[[noreturn]] void failAbout(const std::string& name);

}  // namespace packing
