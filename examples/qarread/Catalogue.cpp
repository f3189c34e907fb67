#include "Catalogue.hpp"

#include "../Output.hpp"
#include "../printable.hpp"

#include <qardatainterfaces/QARPath.hpp>

#include <iomanip>
#include <sstream>

namespace qarread {

using Korvane::qardatainterfaces::QARPath;

void Catalogue::show(const Found& found, const Record& record) {
  if (!record.hasSucceeded()) return;
  const auto entry = QARPath::fromNative(found.name.native());
  catalogue_.addFileMapEntry(entry, QARPath::fromNative(record.path), false);
  catalogue_.getFileMap()[entry].setUserData(record.reader);
}

void Catalogue::end() {
  for (const auto& [name, record] : catalogue_.getFileMap()) {
    std::ostringstream line;
    line << std::left << std::setw(11) << record.getUserData() << printable(QARPath::toNative(name)) << '\n';
    output_.write(line.str());
  }
}

}  // namespace qarread
