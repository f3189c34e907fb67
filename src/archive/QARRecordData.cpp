#include <qardatainterfaces/QARRecordData.hpp>

#include <utility>

namespace Korvane::qardatainterfaces {

QARRecordData::QARRecordData() = default;
QARRecordData::QARRecordData(const std::u16string& name, bool demo, const std::string& userData)
    : metaData_(demo, userData), name_(name) {}
QARRecordData::QARRecordData(const QARRecordData&) = default;
QARRecordData::QARRecordData(QARRecordData&& other) noexcept : name_(std::move(other.name_)) {
  metaData_.fields_ = std::move(other.metaData_.fields_);  // QARMetaData itself has no move operations
}
QARRecordData& QARRecordData::operator=(const QARRecordData& other) { return *this = QARRecordData(other); }
QARRecordData& QARRecordData::operator=(QARRecordData&& other) noexcept {
  metaData_.fields_ = std::move(other.metaData_.fields_);
  name_ = std::move(other.name_);
  return *this;
}
QARRecordData::~QARRecordData() = default;

void QARRecordData::setName(const std::u16string& name) { name_ = name; }
std::u16string QARRecordData::getName() const { return name_; }

bool QARRecordData::isDemo() const { return metaData_.isDemo(); }
void QARRecordData::setDemo(bool demo) { metaData_.setDemo(demo); }
std::string QARRecordData::getUserData() const { return metaData_.getUserData(); }
void QARRecordData::setUserData(const std::string& userData) { metaData_.setUserData(userData); }

QARMetaData& QARRecordData::getMetaData() { return metaData_; }
const QARMetaData& QARRecordData::getMetaData() const { return metaData_; }

}  // namespace Korvane::qardatainterfaces
