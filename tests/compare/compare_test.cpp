#include "qvtools/compare/compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <tuple>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/text/gbk_text.h"

namespace {

using qv::ChangeKind;

void start(DXF& dxf) {
  dxf.New_MemDxf();
  dxf.Add_Layer("BEAM", 3, "CONTINUOUS");
}

/// Two states of a drawing of which it is known what was done to it.
class Revisions : public testing::Test {
 protected:
  Revisions() { start(before), start(after); }

  float place() { return static_cast<float>(std::uniform_int_distribution(0, 3'000'000)(random)) / 100; }

  /// Writes the i-th thing, unlike all others, where `edit` says.
  void write(DXF& to, int i, float x, float y, const char* layer = "0", const char* words = nullptr) {
    const auto size = static_cast<float>(300 + i);
    const std::string text = "KL-" + std::to_string(i);
    switch (i % 5) {
      case 0:
        // The way of a line does not matter.
        &to == &before ? to.Write_Line(x, y, 0, x + size, y + 70, 0, layer, "BYLAYER", "BYLAYER")
                       : to.Write_Line(x + size, y + 70, 0, x, y, 0, layer, "BYLAYER", "BYLAYER");
        break;
      case 1:
        to.Write_Text(x, y, 0, 250, 30, words ? words : text.c_str(), "STANDARD", layer, "BYLAYER", "BYLAYER");
        break;
      case 2:
        to.Write_Circle(x, y, 0, size, layer, "1", "BYLAYER");
        break;
      case 3:
        to.Write_Arc(x, y, 0, size, 20, 140, layer, "BYLAYER", "BYLAYER");
        break;
      default:
        write_polyline(to, x, y, size, layer);
    }
  }

  /// Once as a polyline, once as two others that meet somewhere else, or in a block.
  void write_polyline(DXF& to, float x, float y, float s, const char* layer) {
    const float px[] = {x, x + s, x + 2 * s, x + 3 * s}, py[] = {y, y + s, y, y + 50}, z[4] = {};
    const float bulge[] = {0.5F, 0, -1, 0}, width[4] = {};
    if (&to == &before) {
      to.Write_Pline(4, px, py, z, bulge, 0, width, width, layer, "2", "BYLAYER");
    } else if (static_cast<int>(s) % 2) {
      to.Write_Pline(3, px, py, z, bulge, 0, width, width, layer, "2", "BYLAYER");
      to.Write_Pline(2, px + 2, py + 2, z, bulge + 2, 0, width, width, layer, "2", "BYLAYER");
    } else {
      write_polyline_as_block(to, px, py, bulge, layer);
    }
  }

  void write_polyline_as_block(DXF& to, const float* px, const float* py, const float* bulge, const char* layer) {
    auto* const block = new ACAD_BLOCK;
    const std::string name = "P" + std::to_string(to.m_BlockList.GetCount());
    qv::copy_text(block->m_szName, name.c_str());
    auto* const polyline = new ACAD_POLYLINE;
    polyline->m_nColor = 0;  // the insert's
    for (int i = 0; i < 4; ++i) {
      ACAD_VERTEX v;
      v.m_Point = {px[i] - px[0], py[i] - py[0], 0};
      v.m_fBulge = bulge[i];
      polyline->m_Vertices.Add(v);
    }
    block->m_EntityList.AddTail(polyline);
    to.m_BlockList.AddTail(block);
    auto* const insert = new ACAD_INSERT;
    qv::copy_text(insert->m_szBlock, name.c_str());
    qv::copy_text(insert->m_szLayer, layer);
    insert->m_nColor = 2;
    insert->m_Insert = {px[0], py[0], 0};
    to.m_EntityList.AddTail(insert);
  }

  std::mt19937 random{7};
  DXF before;
  DXF after;
};

TEST_F(Revisions, EveryEditIsFoundAndNothingElse) {
  for (const float shift : {0.0F, 5000.0F}) {
    before.New_MemDxf(), after.New_MemDxf();
    start(before), start(after);
    constexpr int kThings = 2000;
    std::map<ChangeKind, int> done;
    std::vector<std::tuple<int, float, float, int>> edits;
    for (int i = 0; i < kThings; ++i) edits.emplace_back(i, place(), place(), static_cast<int>(random() % 40));
    for (const auto& [i, x, y, edit] : edits) write(before, i, x, y);
    std::shuffle(edits.begin(), edits.end(), random);
    for (const auto& [i, x0, y0, edit] : edits) {
      const float x = x0 + shift, y = y0 - shift / 2;
      if (edit == 0) {
        ++done[ChangeKind::Removed];
      } else if (edit == 1) {
        write(after, i, x + 1234, y + 777);
        ++done[ChangeKind::Moved];
      } else if (edit == 2) {
        write(after, i, x, y, "BEAM");
        ++done[ChangeKind::Changed];
      } else if (edit == 3 && i % 5 == 1) {
        write(after, i, x, y, "0", ("other " + std::to_string(i)).c_str());
        ++done[ChangeKind::Changed];
      } else {
        write(after, i, x, y);
      }
      if (edit == 4) {
        write(after, i % 5 == 4 ? i + 10'001 : i + 10'000, place() + 90'000, place());
        ++done[ChangeKind::Added];
      }
    }
    const qv::Comparison found = qv::Compare(before, after);
    EXPECT_EQ(found.shift, CFPoint(shift, -shift / 2));
    // A polyline that is in two pieces now has a difference for each.
    for (const auto& [kind, count] : done) {
      std::vector<int> entities;
      for (const qv::Difference& d : found.differences)
        if (d.kind == kind) entities.push_back(kind == ChangeKind::Added ? d.after : d.before);
      std::sort(entities.begin(), entities.end());
      entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
      EXPECT_EQ(static_cast<int>(entities.size()), count) << static_cast<int>(kind);
    }
    const auto moved = std::find_if(found.differences.begin(), found.differences.end(),
                                    [](const qv::Difference& d) { return d.kind == ChangeKind::Moved; });
    ASSERT_NE(moved, found.differences.end());
    EXPECT_NEAR(moved->moved.x, 1234, 0.05);
    EXPECT_NEAR(moved->moved.y, 777, 0.05);
  }
}

/// Straight lines in pieces, in each state in others; some of another look, some with a gap, some longer.
TEST_F(Revisions, BrokenLinesAreTheSameWhereTheyShowTheSame) {
  enum { kOtherLook, kGap, kLonger, kOdd };
  const auto write_parts = [&](DXF& to, int kind, int parts, const std::array<float, 4>& line, float by) {
    const float until = kind == kLonger && &to == &after ? 1.2F : 1;
    std::vector<float> at{0, until};
    for (int i = 1; i < parts; ++i) at.push_back(until * static_cast<float>(1 + random() % 98) / 100);
    std::sort(at.begin(), at.end());
    at.erase(std::unique(at.begin(), at.end()), at.end());
    for (std::size_t k = 1; k < at.size(); ++k) {
      if (kind == kGap && k == 1 && &to == &after) continue;
      const bool turned = random() % 2;
      const float t = at[k - turned], u = at[k - 1 + turned];
      to.Write_Line(line[0] + by + t * line[2], line[1] + t * line[3], 0, line[0] + by + u * line[2],
                    line[1] + u * line[3], 0, kind == kOtherLook && &to == &after ? "BEAM" : "0",
                    kind < kOdd ? "1" : "2", "BYLAYER");
    }
  };
  for (const float shift : {0.0F, 700.0F}) {
    before.New_MemDxf(), after.New_MemDxf();
    start(before), start(after);
    std::size_t odd = 0;
    for (int i = 0; i < 600; ++i) {
      const std::array line{place(), place(), place() / 10 - 1500, place() / 10 - 1500};
      write_parts(before, i % 12, 1 + static_cast<int>(random() % 3), line, 0);
      write_parts(after, i % 12, 2 + static_cast<int>(random() % 3), line, shift);
      odd += i % 12 < kOdd;
    }
    for (int i = 0; shift > 0 && i < 3000; ++i) {  // by which the shift is found
      const float x = place(), y = place();
      before.Write_Circle(x, y, 0, static_cast<float>(i + 1), "0", "BYLAYER", "BYLAYER");
      after.Write_Circle(x + shift, y, 0, static_cast<float>(i + 1), "0", "BYLAYER", "BYLAYER");
    }
    const qv::Comparison found = qv::Compare(before, after);
    EXPECT_EQ(found.shift, CFPoint(shift, 0));
    EXPECT_GE(found.differences.size(), odd);
    const auto color_of = [](const DXF& dxf, int number) {
      POSITION at = dxf.m_EntityList.GetHeadPosition();
      while (number-- > 0) dxf.m_EntityList.GetNext(at);
      return static_cast<ACAD_LINE*>(dxf.m_EntityList.GetAt(at))->m_nColor;
    };
    for (const qv::Difference& d : found.differences)
      EXPECT_EQ(d.after >= 0 ? color_of(after, d.after) : color_of(before, d.before), 1);
  }
}

/// Its corners may be counted from any of them, either way.
TEST_F(Revisions, SurfacesAreTheSameFromAnyCorner) {
  for (int i = 0; i < 64; ++i) {
    const float x = place(), y = place();
    const float px[] = {x, x + 400, x + 500, x + 30}, py[] = {y, y + 20, y + 300, y + 250};
    for (DXF* const to : {&before, &after}) {
      const int first = to == &before ? 0 : i % 4, step = to == &before || i % 8 < 4 ? 1 : 3;
      const auto corner = [&](int k) { return (first + k * step) % 4; };
      const int a = corner(0), b = corner(1), c = corner(2), d = corner(3);
      if (i % 2)
        to->Write_Solid(px[a], py[a], 0, px[b], py[b], 0, px[d], py[d], 0, px[c], py[c], 0, "0", "1", "BYLAYER");
      else
        to->Write_3DFace(px[a], py[a], 0, px[b], py[b], 0, px[c], py[c], 0, px[d], py[d], 0, "0", "1", "BYLAYER");
      to->Write_Point(x, y + 900, 0, "0");
    }
  }
  EXPECT_TRUE(qv::Compare(before, after).IsSame());
  // A solid whose sides cross is another one.
  before.Write_Solid(0, 0, 0, 9, 0, 0, 0, 9, 0, 9, 9, 0, "0", "1", "BYLAYER");
  after.Write_Solid(0, 0, 0, 9, 0, 0, 9, 9, 0, 0, 9, 0, "0", "1", "BYLAYER");
  after.Write_Point(5, 5, 0, "0");
  const qv::Comparison found = qv::Compare(before, after);
  EXPECT_EQ(found.Count(ChangeKind::Removed), 1);
  EXPECT_EQ(found.Count(ChangeKind::Added), 2);
  const std::unique_ptr<DXF> drawn = qv::DrawComparison(before, after, found);
  ASSERT_TRUE(drawn);
  std::map<int, int> kinds;
  for (POSITION at = drawn->m_EntityList.GetHeadPosition(); at;)
    ++kinds[static_cast<ACAD_ENTITY*>(drawn->m_EntityList.GetNext(at))->GetType()];
  EXPECT_EQ(kinds[ACAD_TYPE_SOLID], 34);
  EXPECT_EQ(kinds[ACAD_TYPE_3DFACE], 32);
  EXPECT_EQ(kinds[ACAD_TYPE_POINT], 65);
}

/// On a coarse raster nearly everything is there several times.
TEST_F(Revisions, MatchesAsManyAsAComparisonOfAllWithAll) {
  for (int round = 0; round < 20; ++round) {
    before.New_MemDxf(), after.New_MemDxf();
    using Line = std::array<float, 4>;
    std::vector<Line> lines[2];
    for (int side = 0; side < 2; ++side)
      for (int i = 0; i < 300; ++i) {
        // Of points on a parabola no three lie on a line.
        const auto p = static_cast<float>(random() % 5), q = static_cast<float>(random() % 5);
        Line l{p, p * p, q, q * q};
        (side ? after : before).Write_Line(l[0], l[1], 0, l[2], l[3], 0, "0", "BYLAYER", "BYLAYER");
        if (std::pair(l[2], l[3]) < std::pair(l[0], l[1])) l = {l[2], l[3], l[0], l[1]};
        lines[side].push_back(l);
      }
    int same = 0;
    for (const Line& line : lines[0]) {
      const auto at = std::find(lines[1].begin(), lines[1].end(), line);
      if (at == lines[1].end()) continue;
      lines[1].erase(at);
      ++same;
    }
    qv::CompareOptions options;
    options.findShift = false;
    const qv::Comparison found = qv::Compare(before, after, options);
    EXPECT_EQ(found.same, same);
    int rest = 0;
    for (const qv::Difference& d : found.differences) rest += d.kind != ChangeKind::Removed ? d.pieces : 0;
    EXPECT_EQ(rest, 300 - same);
  }
}

TEST_F(Revisions, WithinTheToleranceNothingDiffersAndNearDifferencesAreOnePlace) {
  for (int i = 0; i < 500; ++i) {
    const float x = place(), y = place();
    before.Write_Line(x, y, 0, x + 900, y, 0, "0", "BYLAYER", "BYLAYER");
    after.Write_Line(x + 0.009F, y - 0.009F, 0, x + 900, y, 0, "0", "BYLAYER", "BYLAYER");
  }
  EXPECT_TRUE(qv::Compare(before, after).IsSame());
  for (const float x : {0.0F, 100.0F, 20'000.0F}) after.Write_Circle(x, 5, 0, 3, "0", "BYLAYER", "BYLAYER");
  qv::CompareOptions options;
  options.gather = 500;
  const qv::Comparison found = qv::Compare(before, after, options);
  EXPECT_EQ(found.Count(ChangeKind::Added), 3);
  ASSERT_EQ(found.places.size(), 2U);
  EXPECT_EQ(found.places[0].differences.size() + found.places[1].differences.size(), 3U);
}

/// What is drawn over each other has every piece of both, on the layer of its fate.
TEST_F(Revisions, TheDrawingOfBothComparesLikeThem) {
  for (int i = 0; i < 400; ++i) {
    const float x = place(), y = place();
    if (i % 10 != 3) write(before, i, x, y);
    if (i % 10 != 7) write(after, i, x, y);
  }
  const qv::Comparison found = qv::Compare(before, after);
  const std::unique_ptr<DXF> drawn = qv::DrawComparison(before, after, found);
  ASSERT_TRUE(drawn);
  std::map<std::string, int> layers;
  for (POSITION at = drawn->m_EntityList.GetHeadPosition(); at;)
    qv::visit_entity(*static_cast<ACAD_ENTITY*>(drawn->m_EntityList.GetNext(at)),
                     [&](auto& record) { ++layers[record.m_szLayer]; });
  EXPECT_EQ(layers[qv::kSameLayer], found.same);
  EXPECT_EQ(layers[qv::kOldLayer], 40);
  EXPECT_EQ(layers[qv::kNewLayer], 40);
  EXPECT_EQ(layers[qv::kPlacesLayer], static_cast<int>(2 * found.places.size()));
  // Back in the layers that they had, the grey and the green pieces are the new drawing.
  DXF flat;
  start(flat);
  for (POSITION at = after.m_EntityList.GetHeadPosition(); at;)
    flat.m_EntityList.AddTail(qv::CloneEntity(*static_cast<ACAD_ENTITY*>(after.m_EntityList.GetNext(at))));
  EXPECT_LT(drawn->GetFRect().x1, flat.GetFRect().x1 + 1);
}

TEST_F(Revisions, HostileNumbersEndAndAreTold) {
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
  for (int i = 0; i < 3000; ++i) {
    before.Write_Circle(0, 0, 0, static_cast<float>(i), "0", "BYLAYER", "BYLAYER");
    after.Write_Circle(0, 0, 0, static_cast<float>(i) + 0.5F, "0", "BYLAYER", "BYLAYER");
  }
  before.Write_Line(nan, 0, 0, inf, 1e38F, 0, "0", "BYLAYER", "BYLAYER");
  after.Write_Line(-inf, 0, nan, inf, -1e38F, 0, "0", "BYLAYER", "BYLAYER");
  const qv::Comparison found = qv::Compare(before, after);
  EXPECT_FALSE(found.IsSame());
  EXPECT_TRUE(qv::DrawComparison(before, after, found));
}

}  // namespace
