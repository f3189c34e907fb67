#include <qardatainterfaces/QARTransform.hpp>

#include <gtest/gtest.h>

namespace Korvane::qardatainterfaces {
namespace {

class Nothing : public QARTransform {
public:
  using QARTransform::QARTransform;
  bool cleanup() override { return true; }
  bool transform(const QARByteArray&, QARByteArray&, QARMetaData&) override { return true; }
};

TEST(QARTransform, TellsWhatItWasGiven) {
  Nothing plain;
  EXPECT_STREQ(plain.getId(), "");
  EXPECT_TRUE(!plain.isSetup() && plain.allowZeroLengthInputFiles() && !plain.allowZeroLengthOutputFiles());
  char id[] = "name";
  Nothing named(id, false, true);
  id[0] = 'g';
  EXPECT_STREQ(named.getId(), "name");
  EXPECT_EQ(named.getId(), named.getId());
  EXPECT_TRUE(!named.isSetup() && !named.allowZeroLengthInputFiles() && named.allowZeroLengthOutputFiles());
}

TEST(QARTransform, FilterCopies) {
  Nothing transform;
  QARByteArray in(std::string("ab")), out;
  unsigned char byte = 0;
  in.read(&byte, 1);
  EXPECT_TRUE(transform.filter(in, out) && out == in && transform.filter(in, in));
  in.read(&byte, 1);
  EXPECT_EQ(byte, 'b') << "onto itself it changes nothing";
  out.read(&byte, 1);
  EXPECT_EQ(byte, 'a') << "a copy is read from its start";
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
