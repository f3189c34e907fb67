#pragma once

#include "content.hpp"

#include <gtest/gtest.h>
#include <qardatainterfaces/QARTransform.hpp>

#include <string>

namespace Korvane::qardatainterfaces {

/// The output of a transform that must succeed.
inline std::string transformed(QARTransform& transform, const std::string& content) {
  QARByteArray out;
  QARMetaData meta(false, "");
  EXPECT_TRUE(transform.transform(QARByteArray(content), out, meta));
  return text(out);
}

}  // namespace Korvane::qardatainterfaces
