#include <qardatainterfaces/QARContext.hpp>

#include "types/ByteArrayAccess.hpp"

namespace Korvane::qardatainterfaces {
namespace {

void replaceKey(QARByteArray& key, const QARByteArray& next) {
  if (&key == &next) return;
  QARByteArray copy(next);
  ByteArrayAccess::swap(key, copy);
  ByteArrayAccess::wipe(copy);
}

}  // namespace

QARContext::QARContext() = default;

// Because of the delegating constructor, the destructor runs if a later copy fails. It wipes the keys copied so far.
QARContext::QARContext(const QARContext& other) : QARContext() {
  versionInfo_ = other.versionInfo_;
  tarvoKey_ = other.tarvoKey_;
  compilerKey_ = other.compilerKey_;
  solutionKey_ = other.solutionKey_;
  encSolutionKey_ = other.encSolutionKey_;
  encKeyHash_ = other.encKeyHash_;
}

QARContext& QARContext::operator=(const QARContext& other) {
  if (this != &other) {
    QARContext copy(other);
    versionInfo_.swap(copy.versionInfo_);
    ByteArrayAccess::swap(tarvoKey_, copy.tarvoKey_);
    ByteArrayAccess::swap(compilerKey_, copy.compilerKey_);
    ByteArrayAccess::swap(solutionKey_, copy.solutionKey_);
    ByteArrayAccess::swap(encSolutionKey_, copy.encSolutionKey_);
    ByteArrayAccess::swap(encKeyHash_, copy.encKeyHash_);
  }
  return *this;
}

QARContext::~QARContext() {
  for (auto* const key : {&tarvoKey_, &compilerKey_, &solutionKey_, &encSolutionKey_, &encKeyHash_})
    ByteArrayAccess::wipe(*key);
}

void QARContext::setVersionInfo(const char* versionInfo) { std::string(versionInfo).swap(versionInfo_); }
std::string QARContext::getVersionInfo() const { return versionInfo_; }

void QARContext::setTarvoKey(const QARByteArray& key) { replaceKey(tarvoKey_, key); }
void QARContext::setCompilerKey(const QARByteArray& key) { replaceKey(compilerKey_, key); }
void QARContext::setSolutionKey(const QARByteArray& key) { replaceKey(solutionKey_, key); }
void QARContext::setEncSolutionKey(const QARByteArray& key) { replaceKey(encSolutionKey_, key); }
void QARContext::setEncKeyHash(const QARByteArray& hash) { replaceKey(encKeyHash_, hash); }

QARByteArray& QARContext::getTarvoKey() { return tarvoKey_; }
QARByteArray& QARContext::getCompilerKey() { return compilerKey_; }
QARByteArray& QARContext::getSolutionKey() { return solutionKey_; }
QARByteArray& QARContext::getEncSolutionKey() { return encSolutionKey_; }
QARByteArray& QARContext::getEncKeyHash() { return encKeyHash_; }

}  // namespace Korvane::qardatainterfaces
