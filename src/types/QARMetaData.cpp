#include <qardatainterfaces/QARMetaData.hpp>

namespace Korvane::qardatainterfaces {

QARMetaData::QARMetaData() = default;
QARMetaData::QARMetaData(bool demo, const std::string& userData) : demo_(demo), userData_(userData) {}
QARMetaData::QARMetaData(const QARMetaData&) = default;
QARMetaData::QARMetaData(QARMetaData&&) noexcept = default;
QARMetaData& QARMetaData::operator=(QARMetaData&&) noexcept = default;
QARMetaData::~QARMetaData() = default;

QARMetaData& QARMetaData::operator=(const QARMetaData& other) {
  userData_ = other.userData_;  // may throw, and then nothing has changed
  demo_ = other.demo_;
  return *this;
}

bool QARMetaData::isDemo() const { return demo_; }
void QARMetaData::setDemo(bool demo) { demo_ = demo; }
std::string QARMetaData::getUserData() const { return userData_; }
void QARMetaData::setUserData(const std::string& userData) { userData_ = userData; }

}  // namespace Korvane::qardatainterfaces
