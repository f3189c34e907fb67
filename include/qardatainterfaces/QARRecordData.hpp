#pragma once

#include <qardatainterfaces/QARMetaData.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// What a catalogue holds for one entry: a name, and the metadata with the entry's flag and user data.
///
/// Errors   What stores or copies a text throws `std::bad_alloc` and then changes nothing.
/// Threads  Distinct records are independent; one record may be read by several threads, or changed by one.
class [[gnu::visibility("default")]] QARRecordData {
public:
  /// No name, default metadata: the flag is true, the user data empty.
  QARRecordData();
  /// That name, and metadata of that flag and user data.
  QARRecordData(const std::u16string& name, bool demo, const std::string& userData);
  /// Copies are independent; of a record that was moved from, only assignment and destruction are of use.
  /// @{
  QARRecordData(const QARRecordData&);
  QARRecordData(QARRecordData &&) noexcept;
  QARRecordData& operator=(const QARRecordData&);
  QARRecordData& operator=(QARRecordData&&) noexcept;
  /// @}
  virtual ~QARRecordData();

  /// The name; getting it makes a copy.
  /// @{
  void setName(const std::u16string& name);
  std::u16string getName() const;
  /// @}

  /// The flag and the user data of the metadata.
  /// @{
  bool isDemo() const;
  void setDemo(bool demo);
  std::string getUserData() const;
  void setUserData(const std::string& userData);
  /// @}

  /// The record's own metadata, valid as long as the record.
  /// @{
  QARMetaData& getMetaData();
  const QARMetaData& getMetaData() const;
  /// @}

private:
  QARMetaData metaData_;
  std::u16string name_;
};

}  // namespace Korvane::qardatainterfaces
