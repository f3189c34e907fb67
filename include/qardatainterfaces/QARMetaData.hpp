#pragma once

#include <string>

namespace Korvane::qardatainterfaces {

/// What travels beside the content of a file: a flag and a text, both without meaning to the library.
///
/// Copies   Plain copies of both, independent of each other.
/// Errors   What stores or copies the text throws `std::bad_alloc` and then changes nothing.
/// Threads  Distinct objects are independent; one object may be read by several threads, or changed by one.
class [[gnu::visibility("default")]] QARMetaData {
public:
  /// The flag is true, the text empty.
  QARMetaData();
  /// That flag and that text.
  QARMetaData(bool demo, const std::string& userData);
  virtual ~QARMetaData();

  /// The flag.
  /// @{
  bool isDemo() const;
  void setDemo(bool demo);
  /// @}
  /// A copy of the text: bytes in no particular encoding.
  /// @{
  std::string getUserData() const;
  void setUserData(const std::string& userData);
  /// @}

private:
  friend class QARRecordData;

  // One member, so that the copy operations that the compiler makes change all of it or nothing.
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
