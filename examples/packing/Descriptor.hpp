#pragma once

#include <cstddef>
#include <string>

namespace packing {

/// An open file or directory; closed with the object.
class Descriptor {
public:
  /// What `open` and its like have returned: negative if they failed, with `errno` saying why. Then throws
  /// `std::system_error` with `name`, as all failures do.
  Descriptor(int handle, std::string name);
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const noexcept { return handle_; }
  const std::string& name() const noexcept { return name_; }

  /// Closes the one before and takes that one, as the constructor does.
  void replace(int handle);

  void write(const void* bytes, std::size_t size);

  /// Some file systems tell only here that a write has failed.
  void close();

private:
  int handle_;
  std::string name_;
};

/// Throws `std::system_error` of `errno`, with `name`.
[[noreturn]] void failAbout(const std::string& name);

}  // namespace packing
