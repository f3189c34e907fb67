#pragma once

#include <qardatainterfaces/QARRecordData.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Korvane::qardatainterfaces {

/// The catalogue of one archive: a record per entry name, a value per root macro, and two lists of paths.
///
/// Names      Names are stored unit for unit and never normalised; an empty name is allowed. Maps are ordered by
///            16-bit units, which differs from the order of code points.
/// Ownership  The catalogue holds copies. The getters return references to its own containers, valid as long as the
///            catalogue; callers may change the containers freely. The address of a record does not change until its
///            entry is removed. Arguments may refer to elements of the catalogue itself.
/// Errors     Members that store something may throw `std::bad_alloc`; they then change nothing, except for
///            `replaceFileMapEntry`.
/// Threads    Distinct catalogues are independent. One catalogue may be used by one thread at a time.
class [[gnu::visibility("default")]] QARData {
public:
  /// All four containers are empty.
  QARData();
  /// Independent copies of all four.
  /// @{
  QARData(const QARData&);
  QARData& operator=(const QARData&);
  /// @}
  virtual ~QARData();

  /// The containers themselves, not copies.
  /// @{
  std::map<std::u16string, QARRecordData>& getFileMap();
  std::map<std::u16string, std::u16string>& getRootMacroMap();
  std::vector<std::u16string>& getTarvoPathVector();
  std::vector<std::u16string>& getClassPathVector();
  /// @}

  /// Whether the file map has an entry of that name.
  bool existEntry(const std::u16string& entryName);

  /// Append a path, even if the list has it already, and return the new number of paths.
  /// @{
  std::uint64_t addTarvoPathEntry(const std::u16string& path);
  std::uint64_t addClassPathEntry(const std::u16string& path);
  /// @}

  /// Sets the record of the entry to this name and demo flag, with empty user data. Replaces an existing record.
  /// Returns the new number of entries.
  std::uint32_t addFileMapEntry(const std::u16string& entryName, const std::u16string& recordName, bool demo);

  /// Removes the entry of the old name, if there is one, and then returns
  /// `addFileMapEntry(newEntryName, recordName, false)`. If that throws, the old entry is already removed.
  std::uint32_t replaceFileMapEntry(const std::u16string& oldEntryName, const std::u16string& newEntryName,
                                    const std::u16string& recordName);

  /// Sets the value of the macro. Returns the new number of macros.
  std::uint64_t addRootMacroMapEntry(const std::u16string& macroName, const std::u16string& value);

private:
  std::map<std::u16string, QARRecordData> fileMap_;
  std::map<std::u16string, std::u16string> rootMacroMap_;
  std::vector<std::u16string> tarvoPathVector_;
  std::vector<std::u16string> classPathVector_;
};

}  // namespace Korvane::qardatainterfaces
