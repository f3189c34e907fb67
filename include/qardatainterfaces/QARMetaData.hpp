#pragma once

#include <string>

namespace Korvane::qardatainterfaces {

/// Metadata that accompanies the content of a file: the demo flag, and a text named user data. The library does not
/// interpret them.
///
/// Copies   Copies are independent of each other.
/// Errors   Members that store or copy the user data may throw `std::bad_alloc`; they then change nothing.
/// Threads  Distinct objects are independent; one object may be read by several threads, or changed by one.
class [[gnu::visibility("default")]] QARMetaData {
public:
  /// The demo flag is true, and the user data are empty.
  QARMetaData();
  /// Stores the demo flag and a copy of the user data.
  QARMetaData(bool demo, const std::string& userData);
  virtual ~QARMetaData();

  /// The demo flag.
  /// @{
  bool isDemo() const;
  void setDemo(bool demo);
  /// @}
  /// The user data: bytes in no particular encoding, possibly with zero bytes. The getter returns a copy.
  /// @{
  std::string getUserData() const;
  void setUserData(const std::string& userData);
  /// @}

private:
  friend class QARRecordData;

  // Both fields in one member: the implicit copy assignment then changes all or nothing.
  struct Fields {
    Fields() = default;
    Fields(bool demoFlag, const std::string& text) : demo(demoFlag), userData(text) {}
    Fields(const Fields&) = default;
    Fields(Fields&&) noexcept = default;
    Fields& operator=(const Fields& other) { return *this = Fields(other); }
    Fields& operator=(Fields&&) noexcept = default;
    ~Fields() = default;

    bool demo = true;
    std::string userData;
  };
  Fields fields_;
};

}  // namespace Korvane::qardatainterfaces
