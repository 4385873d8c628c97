#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "qvtools.h"
#include "support/even_text_font.h"

namespace {

using testing::ElementsAre;

template <class Record>
std::vector<Record*> all_of(const DXF& drawing) {
  std::vector<Record*> found;
  for (POSITION at = drawing.m_EntityList.GetHeadPosition(); at;)
    if (auto* record = dynamic_cast<Record*>(static_cast<ACAD_ENTITY*>(drawing.m_EntityList.GetNext(at))))
      found.push_back(record);
  return found;
}

std::vector<std::string> texts_of(const DXF& drawing) {
  std::vector<std::string> texts;
  for (const ACAD_TEXT* text : all_of<ACAD_TEXT>(drawing)) texts.push_back(text->m_szText);
  return texts;
}

class Composing : public testing::Test {
 protected:
  void SetUp() override {
    sgt.reset(NewMemDxf());
    sgt->SetBiLiChi(50);
  }
  qvtest::EvenTextFont font;
  std::unique_ptr<CBase_SGT> sgt;
};

/// Whether the text as it is drawn stands in the box.
bool stands_in(ACAD_TEXT& text, const CFRect& box) {
  float x[4], y[4];
  text.GetOutLook(x, y);
  return std::all_of(x, x + 4, [&](float v) { return v > box.x1 && v < box.x2; }) &&
         std::all_of(y, y + 4, [&](float v) { return v > box.y1 && v < box.y2; });
}

TEST_F(Composing, TitleBlockEntriesStayInTheirCells) {
  for (const int portrait : {0, 1}) {
    sgt.reset(NewMemDxf());
    const qv::SheetFrame sheet(*sgt, 1000, 2000, 2, 0, portrait);
    const qv::TitleBlock block(sheet);
    const qv::CounterSignBlock countersign(sheet);
    for (int i = 0; i <= static_cast<int>(qv::TitleEntry::Date); ++i)
      block.Fill(*sgt, static_cast<qv::TitleEntry>(i), i % 2 ? "X" : "A NAME THAT IS MUCH TOO LONG FOR A SMALL CELL");
    countersign.Fill(*sgt,
                     {{"A", "B", "2026.05"}, {"C", "LONGER THAN THE CELL IS", "D"}, {}, {"lost", "lost", "lost"}});
    const auto texts = all_of<ACAD_TEXT>(*sgt);
    ASSERT_EQ(texts.size(), 11U + 3 * 3) << "empty entries leave no texts";
    for (int i = 0; i < 11; ++i)
      EXPECT_TRUE(stands_in(*texts[static_cast<std::size_t>(i)], block.Cell(static_cast<qv::TitleEntry>(i)))) << i;
    for (int i = 0; i < 9; ++i)
      EXPECT_TRUE(stands_in(*texts[static_cast<std::size_t>(11 + i)], countersign.Cell(i / 3, i % 3))) << i;
    EXPECT_EQ(sgt->m_pStyle[1].m_fWidthFactor, 0.75F);
    EXPECT_EQ(block.Cell(qv::TitleEntry::Drawing).x2, sheet.inside.x2);
  }
}

TEST_F(Composing, ATableHasWhatItsCellsNeed) {
  qv::SheetTable::Look look;
  look.mostHeight = 30;  // header and three rows
  qv::SheetTable table({{0, qv::Across::Left}, {20}, {15}}, look);
  table.AddHeader({"MARK", "SIZE"}, 9);
  table.AddRow({"KL1", "300x700", "C25", "lost"});
  for (const char* mark : {"A LONGER MARK", "KL3", "KL4", "KL5"}) table.AddRow({mark});
  table.Merge(3, 0, 2, 2);
  table.Merge(4, 1, 1, 1);  // merged already
  const double first = qv::SheetTextWidth("A LONGER MARK", 3.5F) + 3;
  EXPECT_NEAR(table.Width(), 2 * (first + 35) + 5, 1e-3);
  EXPECT_NEAR(table.Height(), 9 + 3 * 7, 1e-6) << "rows 3 and 4 hang together";
  const auto place = table.Draw(*sgt, 100, 9000);
  EXPECT_NEAR(place.Cell(3, 0).Height(), 14 * 50, 0.1);
  EXPECT_NEAR(place.Cell(4, 1).x2, place.Cell(3, 0).x2, 1e-3);
  EXPECT_NEAR(place.Cell(3, 0).y2, 9000 - 9 * 50, 0.1) << "under the header again";
  EXPECT_EQ(place.Cell(9, 0).Width(), 0);
  EXPECT_NEAR(place.all().x2, 100 + table.Width() * 50, 0.1);
  const auto texts = texts_of(*sgt);
  EXPECT_EQ(std::ranges::count(texts, "MARK"), 2);
  EXPECT_EQ(std::ranges::count(texts, "lost"), 0);
  for (const ACAD_LINE* line : all_of<ACAD_LINE>(*sgt)) {
    const CFRect merged = place.Cell(3, 0);
    const float x = (line->m_Start.x + line->m_End.x) / 2;
    const float y = (line->m_Start.y + line->m_End.y) / 2;
    EXPECT_FALSE(x > merged.x1 + 1 && x < merged.x2 - 1 && y > merged.y1 + 1 && y < merged.y2 - 1);
  }
}

TEST_F(Composing, BarsAreMeasuredAndWeighed) {
  using qv::BarShape;
  EXPECT_EQ(qv::BarArea(25, 4), 4 * 490.9);
  EXPECT_EQ(qv::BarArea(24), 0);
  EXPECT_NEAR(qv::BarAreaPerMetre(8, 200), 251.35, 0.01);
  for (const qv::BarSize& size : qv::BarSizes()) {  // the table agrees with what it is made of, as it is rounded
    const double area = std::acos(-1) * size.diameter * size.diameter / 4;
    EXPECT_NEAR(size.area, area, area * 6e-4) << size.diameter;
    EXPECT_NEAR(size.mass, area * 7.85e-3, area * 7.85e-3 * 5e-3) << size.diameter;
  }
  qv::BarList list;
  list.Add({"1", BarShape::BentTwice, 3, 25, 2, 14000, 400, 400, 0});
  list.Add({"2", BarShape::Stirrup, 1, 8, 100, 250, 650, 0, 0});
  list.Add({"3", BarShape::Straight, 3, 25, 1, 0, 0, 0, 4000});
  EXPECT_EQ(qv::BarList::Length(list.bars()[0]), 14800);
  EXPECT_NEAR(qv::BarList::Length(list.bars()[1]), 1800 + 2 * 11.87 * 8, 1);
  EXPECT_EQ(qv::BarList::Length({"4", BarShape::Bent, 3, 25, 1, 3000, 400, 0, 0}), 3400);
  EXPECT_EQ(qv::BarList::Length({"5", BarShape::Cranked, 3, 25, 1, 3000, 400, 70, 0}), 3940);
  EXPECT_NEAR(qv::BarList::Length({"6", BarShape::Tie, 1, 10, 1, 250, 0, 0, 0}), 250 + 2 * 118.7, 1);
  const auto sums = list.Sums();
  ASSERT_EQ(sums.size(), 2U);
  EXPECT_EQ(sums[0].diameter, 8);
  EXPECT_NEAR(sums[1].length, 33.6, 1e-9);
  EXPECT_NEAR(list.Mass(), 33.6 * 3.85 + 0.395 * 199.0, 0.1);
  // What is printed adds up: 3.57 and 3.57 kg are 3.6 and 3.6.
  qv::BarList halves;
  for (const char* mark : {"1", "2"}) halves.Add({mark, BarShape::Straight, 3, 12, 1, 4020.4, 0, 0, 0});
  EXPECT_NEAR(halves.Mass(), 7.2, 1e-9);
  EXPECT_NEAR(halves.Sums()[0].length, 8.04, 1e-9);
  list.Draw(*sgt, 0, 0);
  const auto texts = texts_of(*sgt);
  for (const char* text : {"14800", "33.60", "129.4"}) EXPECT_THAT(texts, testing::Contains(text));
}

TEST_F(Composing, NotesAreWrappedBetweenCharacters) {
  // Two Chinese characters, a stop that must not begin a line, and words.
  const std::string note = "\xBB\xEC\xC4\xFD\xCD\xC1\xA1\xA3two words C30, end";
  const float character = qv::SheetTextWidth("\xBB\xEC", 3);
  const auto lines = qv::WrapText(note, 3, 3.2F * character);
  EXPECT_EQ(lines[0], "\xBB\xEC\xC4\xFD");
  EXPECT_EQ(lines[1], "\xCD\xC1\xA1\xA3");
  EXPECT_THAT(qv::WrapText("a bb  ccc, d", 3, 0.1F), ElementsAre("a", "bb", "ccc,", "d"));
  // A number stays with its unit where there is room for both.
  EXPECT_THAT(qv::WrapText("long 17.40 m", 3, qv::SheetTextWidth("long 17.40", 3)), ElementsAre("long", "17.40 m"));
  EXPECT_THAT(qv::WrapText("17.40 m", 3, 0.1F), ElementsAre("17.40", "m"));
  for (const std::string& line : qv::WrapText(std::string(500, 'x') + " " + note, 1, 1e6F))
    EXPECT_TRUE(line.size() <= 99 || line == std::string(500, 'x'));
  EXPECT_THAT(qv::WrapText("", 3, 10), ElementsAre(""));
  const CFRect box = qv::NoteBlock("T", {note, note}).Draw(*sgt, 0, 0, 40);
  for (ACAD_TEXT* text : all_of<ACAD_TEXT>(*sgt)) {
    EXPECT_GE(text->m_Insert.y, box.y1);
    EXPECT_LE(text->m_Insert.x + qv::SheetTextWidth(text->m_szText, text->m_fHeight), box.x2 + 1);
  }
}

TEST_F(Composing, ADetailKeepsTheSizesOfItsSheet) {
  const qv::SgtEnvironment before = *sgt;
  const float bar = sgt->m_fGJLineWidth;
  const float dot = sgt->m_fGJDotWidth;
  {
    const qv::SecondScale detail(*sgt, 1000, 2000, 25);
    const float x[] = {0, 300, 300};
    const float y[] = {0, 0, 700};
    sgt->Draw_XianGangJin(0, 0, 300, 0);
    sgt->Draw_XianGangJin(3, x, y);
    sgt->Draw_YuanDianGangJin(0, 0, 0, 0);
    sgt->Draw_Dim_Polar(0, 0, 300, 0, 1, 1);
    sgt->Draw_GangJin_BiaoZhu(0, 0, 100, 100, 500, 1, "2");
    EXPECT_EQ(detail.OnSheet(300, 700).y, 2000 + 1400);
  }
  EXPECT_EQ(std::memcmp(&before, static_cast<qv::SgtEnvironment*>(sgt.get()), sizeof before), 0);
  const auto lines = all_of<ACAD_POLYLINE>(*sgt);
  ASSERT_EQ(lines.size(), 5U);  // two bars, a dot, two ticks
  EXPECT_FLOAT_EQ(lines[0]->m_fStartWidth, bar);
  EXPECT_FLOAT_EQ(lines[1]->m_Vertices[1].m_fStartWidth, bar);
  EXPECT_FLOAT_EQ(lines[1]->m_Vertices[2].m_Point.y, 3400);
  EXPECT_FLOAT_EQ(2 * (lines[2]->m_Vertices[0].m_Point.y - 2000) + lines[2]->m_fStartWidth, dot);
  EXPECT_FLOAT_EQ(lines[3]->m_fStartWidth, sgt->m_fDimLineWidth);
  EXPECT_THAT(texts_of(*sgt), ElementsAre("300", "2", "1"));
  EXPECT_FLOAT_EQ(all_of<ACAD_TEXT>(*sgt)[0]->m_fHeight, 125);
  EXPECT_FLOAT_EQ(all_of<ACAD_CIRCLE>(*sgt)[0]->m_fRadius, 150);
}

TEST_F(Composing, DimensionChainsTellTrueLengths) {
  const float at[] = {6000, 0, 200, 200.2F, 400, 500};
  for (const auto side : {qv::ChainSide::Below, qv::ChainSide::Above, qv::ChainSide::Left, qv::ChainSide::Right}) {
    sgt.reset(NewMemDxf());
    qv::DrawDimensionChain(*sgt, side, at, -3000);
    auto texts = texts_of(*sgt);
    std::ranges::sort(texts);
    EXPECT_THAT(texts, ElementsAre("100", "200", "200", "5500"));
    const bool level = side == qv::ChainSide::Below || side == qv::ChainSide::Above;
    auto drawn = all_of<ACAD_TEXT>(*sgt);
    for (std::size_t i = 0; i < drawn.size(); ++i) {
      EXPECT_NEAR(std::fmod(drawn[i]->m_fRotation, 360), level ? 0 : 90, 1e-3) << "read from below or the right";
      float x[4], y[4];
      drawn[i]->GetOutLook(x, y);
      const CFRect one(x[0], y[0], x[2], y[2]);
      for (std::size_t k = 0; k < i; ++k) {
        drawn[k]->GetOutLook(x, y);
        EXPECT_EQ((one & CFRect(x[0], y[0], x[2], y[2])).Width(), 0) << drawn[i]->m_szText << drawn[k]->m_szText;
      }
    }
  }
}

TEST_F(Composing, AxesComeFromSpacings) {
  const float xs[] = {6000, 0, 6600};
  const std::vector<float> ys(24, 3000);
  qv::AxisGrid grid(100, 200, xs, ys);
  EXPECT_EQ(grid.X("3"), 12700);
  EXPECT_EQ(grid.Y("J") - grid.Y("H"), 3000) << "no I";
  EXPECT_EQ(grid.yNames[24], "BB");
  EXPECT_TRUE(std::isnan(grid.X("4")));
  sgt->Add_Default_LineType();
  grid.xNames[1].clear();
  grid.DrawAxes(*sgt);
  EXPECT_EQ(all_of<ACAD_CIRCLE>(*sgt).size(), 2U * (2 + 25));
  grid.DrawDimensions(*sgt, true);
  const auto texts = texts_of(*sgt);
  EXPECT_EQ(std::ranges::count(texts, "12600"), 2);
  EXPECT_EQ(std::ranges::count(texts, "6600"), 2);
}

TEST_F(Composing, LeadersNeitherTouchNorCross) {
  for (const auto side : {qv::Leaders::Side::Left, qv::Leaders::Side::Right, qv::Leaders::Side::Above}) {
    sgt.reset(NewMemDxf());
    const bool row = side == qv::Leaders::Side::Above;
    qv::Leaders leaders(side, side == qv::Leaders::Side::Left ? -2000.0F : 9000.0F);
    for (int i = 0; i < 6; ++i)
      leaders.Add(static_cast<float>(1000 + 977 * i % 500), static_cast<float>(4000 + 613 * i % 400), "4X25", i + 1);
    leaders.Draw(*sgt);
    const auto circles = all_of<ACAD_CIRCLE>(*sgt);
    ASSERT_EQ(circles.size(), 6U);
    std::vector<float> at;
    for (const ACAD_CIRCLE* circle : circles) at.push_back(row ? circle->m_Center.x : circle->m_Center.y);
    std::ranges::sort(at);
    for (std::size_t i = 1; i < 6; ++i) EXPECT_GE(at[i] - at[i - 1], 600 - 0.1);
    // Leaders are the lines that reach from a point to the column or row: in threes with the tick and the level part.
    const auto lines = all_of<ACAD_LINE>(*sgt);
    const auto turn = [](qv::Point3 a, qv::Point3 b, qv::Point3 c) {
      return (double{b.x} - a.x) * (double{c.y} - a.y) - (double{b.y} - a.y) * (double{c.x} - a.x);
    };
    for (std::size_t i = 0; i < lines.size(); i += 3)
      for (std::size_t k = 0; k < i; k += 3) {
        const auto a = lines[i]->m_Start, b = lines[i]->m_End, c = lines[k]->m_Start, d = lines[k]->m_End;
        EXPECT_FALSE(turn(a, b, c) * turn(a, b, d) < 0 && turn(c, d, a) * turn(c, d, b) < 0) << i << ' ' << k;
      }
    leaders.Draw(*sgt);
    EXPECT_EQ(all_of<ACAD_CIRCLE>(*sgt).size(), 6U) << "they are forgotten";
  }
}

class Underlays : public Composing {
 protected:
  void SetUp() override {
    Composing::SetUp();
    plan.Set_MaxNum_of_Tables(5, 100, 5);
    plan.New_MemDxf();
    const float pattern[] = {0.5F, -0.25F};
    plan.Add_LType("DASHED", "- -", 2, 0.75F, pattern);
    sgt->Add_Default_LineType();
    for (int i = 0; i < 60; ++i) plan.Add_Layer(("WALL" + std::to_string(i)).c_str(), i == 7 ? -3 : 3, "DASHED");
    for (int i = 0; i < 60; ++i)
      plan.Write_Line(0, 0, 0, 1, static_cast<float>(i), 0, ("WALL" + std::to_string(i)).c_str(), "BYLAYER", "BYLAYER");
    plan.Write_Circle(2, 3, 0, 0.5F, "0", "1", "DASHED");
    plan.Write_Text(1, 1, 0, 0.3F, 30, "A", "STANDARD", "0", "2", "BYLAYER");
    const float xs[] = {0, 1}, zs[] = {0, 0}, w[] = {0.1F, 0.1F};
    plan.Write_Pline(2, xs, xs, zs, zs, 0, w, w, "0", "1", "BYLAYER");
  }
  DXF plan;
};

TEST_F(Underlays, AreGatheredOnOneGreyLayer) {
  ASSERT_EQ(qv::Underlay(*sgt, plan, {100, 200, 90}, 1000), 1);
  const auto lines = all_of<ACAD_LINE>(*sgt);
  EXPECT_EQ(lines.size(), 59U) << "what lies on the layer that is off is left out";
  EXPECT_STREQ(lines[3]->m_szLayer, "UNDERLAY");
  EXPECT_STREQ(lines[3]->m_szLType, "DASHED-2") << "the pattern is its own";
  EXPECT_EQ(lines[3]->m_nColor, qv::kByLayer);
  EXPECT_NEAR(lines[3]->m_End.y, 200 + 1000, 0.1);
  EXPECT_NEAR(all_of<ACAD_CIRCLE>(*sgt)[0]->m_fRadius, 500, 1e-3);
  EXPECT_NEAR(all_of<ACAD_TEXT>(*sgt)[0]->m_fHeight, 300, 1e-3);
  EXPECT_NEAR(all_of<ACAD_TEXT>(*sgt)[0]->m_fRotation, 120, 1e-3);
  EXPECT_NEAR(all_of<ACAD_POLYLINE>(*sgt)[0]->m_Vertices[0].m_fStartWidth, 100, 1e-3);
  EXPECT_EQ(sgt->m_nLayer, 2);
  EXPECT_EQ(sgt->m_pLayer[1].m_nColor, 8);
  EXPECT_FLOAT_EQ(sgt->m_pLType[sgt->m_nLType - 1].m_fElement[0], 500);
  EXPECT_FLOAT_EQ(all_of<ACAD_CIRCLE>(plan)[0]->m_fRadius, 0.5F) << "the drawing itself stays";
  EXPECT_EQ(qv::UnitFactor(qv::Unit::Metre, qv::Unit::Millimetre), 1000);
}

TEST_F(Underlays, KeepTheirLayersBehindAPrefix) {
  ASSERT_EQ(qv::Underlay(*sgt, plan, {}, 1, {"A-", true, qv::kByLayer}), 1);
  EXPECT_EQ(sgt->m_nLayer, 1 + 61) << "the table grows";
  const auto lines = all_of<ACAD_LINE>(*sgt);
  EXPECT_EQ(lines.size(), 60U);
  EXPECT_STREQ(lines[59]->m_szLayer, "A-WALL59");
  EXPECT_EQ(sgt->m_pLayer[1 + 8].m_nColor, -3);
  EXPECT_STREQ(sgt->m_pLayer[2].m_szLType, "DASHED-2");
  EXPECT_EQ(qv::Underlay(*sgt, plan, {}, 0), 0);
  DXF closed;
  EXPECT_EQ(qv::Underlay(*sgt, closed, {}, 1), 0);
}

}  // namespace
