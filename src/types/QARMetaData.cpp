#include <qardatainterfaces/QARMetaData.hpp>

namespace Korvane::qardatainterfaces {

QARMetaData::QARMetaData() = default;
QARMetaData::QARMetaData(bool demo, const std::string& userData) : fields_(demo, userData) {}
QARMetaData::~QARMetaData() = default;

bool QARMetaData::isDemo() const { return fields_.demo; }
void QARMetaData::setDemo(bool demo) { fields_.demo = demo; }
std::string QARMetaData::getUserData() const { return fields_.userData; }
void QARMetaData::setUserData(const std::string& userData) { fields_.userData = userData; }

}  // namespace Korvane::qardatainterfaces
