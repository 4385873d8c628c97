#include "qvtools/engineering/component.h"

#include <gtest/gtest.h>

#include "qvtools/system/textfile.h"
#include "support/failing_allocations.h"
#include "support/temporary_directory.h"

namespace {

TEST(ComponentIndex, FindsThePositionsOfAStream) {
  const qvtest::TemporaryDirectory directory;
  std::FILE* const file = qv::open_text(directory.path("a").c_str(), "wt");
  CCxIndexFile index;
  EXPECT_EQ(index.End_Item(file), 0);
  EXPECT_EQ(index.Begin_Item(nullptr) + index.End_Item(nullptr), 0);
  for (const char* text : {"12\n", "", "3456\n"}) {
    std::fputs("-\n", file);
    EXPECT_EQ(index.Begin_Item(file), 1);
    std::fputs(text, file);
    EXPECT_EQ(index.End_Item(file), 1);
  }
  {
    const qvtest::FailingAllocations none;
    EXPECT_EQ(index.Begin_Item(file), 0);
  }
  std::fclose(file);
  // -rn 12rn -rn | -rn 3456rn: ranges 3..7, 10..10, 13..19
  const int expected[] = {0, 0, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 3, 3, 3, 3, 3, 3, 0, 0};
  for (int i = 0; i < 21; ++i) EXPECT_EQ(index.FindGouJian(i), expected[i]) << i;
  EXPECT_EQ(index.GetStartPosGouJian(3), 13);
  EXPECT_EQ(index.GetEndPosGouJian(3), 19);
  EXPECT_EQ(index.GetStartPosGouJian(0) + index.GetEndPosGouJian(4), 0);
  index.Clear();
  EXPECT_EQ(index.FindGouJian(3), 0);
}

TEST(ComponentIndex, TakesTheFirstOfOverlappingRanges) {
  const qvtest::TemporaryDirectory directory;
  std::FILE* const file = std::fopen(directory.path("a").c_str(), "wb+");
  CCxIndexFile index;
  for (const int start : {4, 0, 2}) {
    std::fseek(file, start, SEEK_SET);
    index.Begin_Item(file);
    std::fputs("12345", file);
    index.End_Item(file);
  }
  std::fclose(file);
  const int expected[] = {2, 2, 2, 2, 1, 1, 1, 1, 1, 0};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(index.FindGouJian(i), expected[i]) << i;
}

struct Beam : CGouJian {
  using CGouJian::CGouJian;
  int Draw(CDC*, CFCoor*) const override { return 5; }
};

TEST(Component, KeepsItsFieldsInCopies) {
  Beam beam;
  EXPECT_EQ(beam.GetID() + beam.m_dwGouJianNO + beam.m_byteStatus + beam.m_byteBianGouJian, 0u);
  beam.set_m_dwGouJianID(7);
  beam.m_dwGouJianNO = 8;
  beam.set_m_byteBianGouJian(1);
  beam.set_m_byteStatus(2);
  const Beam copy(beam);
  EXPECT_EQ(copy.get_m_dwGouJianID(), 7u);
  EXPECT_EQ(copy.get_m_dwGouJianNO(), 8u);
  EXPECT_EQ(copy.get_m_byteBianGouJian(), 1);
  EXPECT_EQ(copy.get_m_byteStatus(), 2);
  CGouJian& base = beam;
  EXPECT_EQ(base.Draw(nullptr, nullptr), 5);
  EXPECT_EQ(base.HitTest(CFRect(0, 0, 1, 1), 0) + base.HitTest(CFRegion(), 0) + base.GetGjlx(), 0);
  EXPECT_EQ(base.GetFrect().Width(), 0);
}

}  // namespace
