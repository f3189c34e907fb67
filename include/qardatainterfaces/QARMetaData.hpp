#pragma once

#include <string>

namespace Korvane::qardatainterfaces {

/// What travels beside the content of a file: a flag and a text, both without meaning to the library.
///
/// Errors   What stores or copies the text throws `std::bad_alloc` and then changes nothing.
/// Threads  Distinct objects are independent; one object may be read by several threads, or changed by one.
class [[gnu::visibility("default")]] QARMetaData {
public:
  /// The flag is true, the text empty.
  QARMetaData();
  /// That flag and that text.
  QARMetaData(bool demo, const std::string& userData);
  /// Copies are independent; of an object that was moved from, only assignment and destruction are of use.
  /// @{
  QARMetaData(const QARMetaData&);
  QARMetaData(QARMetaData &&) noexcept;
  QARMetaData& operator=(const QARMetaData&);
  QARMetaData& operator=(QARMetaData&&) noexcept;
  /// @}
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
  bool demo_ = true;
  std::string userData_;
};

}  // namespace Korvane::qardatainterfaces
