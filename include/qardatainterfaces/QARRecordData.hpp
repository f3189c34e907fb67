#pragma once

#include <qardatainterfaces/QARMetaData.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// The record of one catalogue entry: a name, and metadata with the entry's demo flag and user data.
///
/// Errors   Members that store or copy a text may throw `std::bad_alloc`; they then change nothing.
/// Threads  Distinct records are independent; one record may be read by several threads, or changed by one.
class [[gnu::visibility("default")]] QARRecordData {
public:
  /// An empty name and default metadata: the demo flag is true, and the user data are empty.
  QARRecordData();
  /// Stores the demo flag and copies of the name and the user data.
  QARRecordData(const std::u16string& name, bool demo, const std::string& userData);
  /// Copies are independent. A record that was moved from may only be assigned to or destroyed.
  /// @{
  QARRecordData(const QARRecordData&);
  QARRecordData(QARRecordData &&) noexcept;
  QARRecordData& operator=(const QARRecordData&);
  QARRecordData& operator=(QARRecordData&&) noexcept;
  /// @}
  virtual ~QARRecordData();

  /// The name. The getter returns a copy.
  /// @{
  void setName(const std::u16string& name);
  std::u16string getName() const;
  /// @}

  /// The demo flag and the user data of the metadata. The getters return copies.
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
