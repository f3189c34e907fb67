#pragma once

#include <qardatainterfaces/QARRecordData.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Korvane::qardatainterfaces {

/// The catalogue of one archive: a record per entry name, a value per root macro, and two lists of paths.
///
/// Names      Taken unit for unit, never normalised; the empty name is a name. Maps are in the order of their
///            16-bit units, which is not that of code points.
/// Ownership  The catalogue holds copies. The references that the getters return are to its own containers and live
///            as long as it; callers may change these as they like. A record stays where it is until its entry is
///            removed. Arguments may refer into the catalogue.
/// Errors     What stores something throws `std::bad_alloc` and then changes nothing, except for
///            `replaceFileMapEntry`.
/// Threads    Distinct catalogues are independent. One catalogue serves one thread at a time.
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

  /// Append a path, which may be there already, and return the number of paths.
  /// @{
  std::uint64_t addTarvoPathEntry(const std::u16string& path);
  std::uint64_t addClassPathEntry(const std::u16string& path);
  /// @}

  /// Sets the record of the entry to that name and flag, without user data, whatever it was before.
  /// Returns the number of entries.
  std::uint32_t addFileMapEntry(const std::u16string& entryName, const std::u16string& recordName, bool demo);

  /// Removes the entry of the old name, if there is one; then `addFileMapEntry(newEntryName, recordName, false)`.
  /// If that throws, the old entry is gone.
  std::uint32_t replaceFileMapEntry(const std::u16string& oldEntryName, const std::u16string& newEntryName,
                                    const std::u16string& recordName);

  /// Sets the value of the macro. Returns the number of macros.
  std::uint64_t addRootMacroMapEntry(const std::u16string& macroName, const std::u16string& value);

private:
  std::map<std::u16string, QARRecordData> fileMap_;
  std::map<std::u16string, std::u16string> rootMacroMap_;
  std::vector<std::u16string> tarvoPathVector_;
  std::vector<std::u16string> classPathVector_;
};

}  // namespace Korvane::qardatainterfaces
