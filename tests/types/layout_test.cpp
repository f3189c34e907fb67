// The slots of virtual operations that programs are compiled with. `./dev abi` compares everything else.

#include <gtest/gtest.h>
#include <opc/InputStream.hpp>
#include <qardatainterfaces/QARFileReader.hpp>

#include <cstring>

namespace Korvane::qardatainterfaces {
namespace {

// A pointer to a virtual member has the offset of its slot in the vtable, in bytes, plus one.
template <class Member>
std::size_t slot(Member member) {
  std::size_t place = 0;
  std::memcpy(&place, &member, sizeof place);
  return place / sizeof(void*);
}

TEST(Layout, HasEachVirtualOperationInItsSlot) {
  EXPECT_EQ(slot(&opc::InputStream::read), 0U);
  EXPECT_EQ(slot(&opc::InputStream::exhausted), 1U);
  using Reader = QARFileReader;
  using Bytes = QARByteArray&;
  // The destructors are 0 and 1.
  const std::size_t slots[] = {slot(&Reader::getTransformId),
                               slot<unsigned (Reader::*)(void*, unsigned)>(&Reader::read),
                               slot<unsigned (Reader::*)(void*, unsigned, QARMetaData&)>(&Reader::read),
                               slot<Bytes (Reader::*)()>(&Reader::readAll),
                               slot<Bytes (Reader::*)(QARMetaData&)>(&Reader::readAll),
                               slot(&Reader::more),
                               slot(&Reader::lastError),
                               slot(&Reader::readSucceeded),
                               slot(&Reader::ready)};
  std::size_t expected = 2;
  for (const auto found : slots) EXPECT_EQ(found, expected++);
}

}  // namespace
}  // namespace Korvane::qardatainterfaces
