#pragma once

#include <qardatainterfaces/QARFileReader.hpp>

namespace Korvane::qardatainterfaces {

/// Delivers the target text of a symbolic link. Each call reads the link again.
class QARSymbolicLinkReader final : public QARFileReader {
public:
  explicit QARSymbolicLinkReader(const std::u16string& path);

  const char* getTransformId() override;
  unsigned int read(void* buffer, unsigned int size) override;
  using QARFileReader::read;
  QARByteArray& readAll(QARMetaData& meta) override;
  using QARFileReader::readAll;
  int ready() override;

private:
  std::u16string linkPath_;
};

}  // namespace Korvane::qardatainterfaces
