#include "qvtools/import/import.h"

#include <gtest/gtest.h>

#include <cmath>

#include "qvtools/dxf/model/visit.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/services/services.h"
#include "qvtools/text/code_page.h"
#include "qvtools/text/numbers.h"
#include "support/failing_allocations.h"
#include "support/font_files.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

std::string number(double v) {
  char text[32];
  qv::format_text(text, sizeof text, "%.4g", std::fabs(v) < 1e-4 ? 0.0 : v);
  return text;
}
std::string point(const qv::Point3& p) {
  return " " + number(p.x) + "," + number(p.y) + (std::fabs(p.z) > 1e-4F ? "," + number(p.z) : "");
}

// What a record holds, in a few words.
std::string words(const ACAD_POINT& r) {
  return "POINT" + point(r.m_Point);
}
std::string words(const ACAD_LINE& r) {
  return "LINE" + point(r.m_Start) + point(r.m_End);
}
std::string words(const ACAD_TEXT& r) {
  return "TEXT" + point(r.m_Insert) + " h" + number(r.m_fHeight) + " w" + number(r.m_fWidthFactor) +
         (r.m_fRotation != 0 ? " turn" + number(r.m_fRotation) : "") + " '" + r.m_szText + "'";
}
std::string words(const ACAD_CIRCLE& r) {
  return "CIRCLE" + point(r.m_Center) + " r" + number(r.m_fRadius);
}
std::string words(const ACAD_ARC& r) {
  return "ARC" + point(r.m_Center) + " r" + number(r.m_fRadius) + " " + number(r.m_fStartAngle) + "-" +
         number(r.m_fEndAngle);
}
std::string words(const ACAD_POLYLINE& r) {
  std::string text = r.m_nFlags ? "POLYLINE/" + number(r.m_nFlags) : "POLYLINE";
  if (r.m_Vertices.GetSize() > 6) return text + " of many";
  for (const ACAD_VERTEX& v : r.m_Vertices) {
    text += point(v.m_Point);
    if (v.m_fBulge != 0) text += "b" + number(v.m_fBulge);
    if (v.m_fStartWidth != 0 || v.m_fEndWidth != 0) text += "w" + number(v.m_fStartWidth) + ":" + number(v.m_fEndWidth);
  }
  return text;
}
template <class Quadrilateral>
std::string words(const Quadrilateral& r, const char* name) {
  std::string text = name;
  for (const qv::Point3& corner : r.m_Corner) text += point(corner);
  return text;
}
std::string words(const ACAD_SOLID& r) {
  return words(r, "SOLID");
}
std::string words(const ACAD_3DFACE& r) {
  return words(r, "3DFACE");
}
std::string words(const ACAD_INSERT& r) {
  return std::string("INSERT ") + r.m_szBlock + point(r.m_Insert);
}

std::string words(const CPtrList& list) {
  std::string text;
  for (POSITION at = list.GetHeadPosition(); at;) {
    auto& entity = *static_cast<ACAD_ENTITY*>(list.GetNext(at));
    text += (text.empty() ? "" : "; ") + qv::visit_entity(entity, [](const auto& r) {
              std::string one = words(r);
              if constexpr (requires { r.m_nColor; })
                if (r.m_nColor >= 0) one += " c" + number(r.m_nColor);
              if (std::string_view(r.m_szLayer) != "0") one += std::string(" on ") + r.m_szLayer;
              return one;
            });
  }
  return text;
}

/// Groups as lines: "10 5" is a code and a value, "/" parts groups.
std::string groups(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t end = text.find('/');
    std::string_view group = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const std::size_t blank = group.find(' ');
    out += std::string(group.substr(0, blank)) + "\n" +
           std::string(blank == std::string_view::npos ? std::string_view() : group.substr(blank + 1)) + "\n";
  }
  return out;
}

class Import : public testing::Test {
 protected:
  // Places of texts are those of estimated widths.
  Import() { G_ShapeFont = CShx(); }
  ~Import() override { G_ShapeFont = fonts_; }

  int import(const std::string& bytes) {
    return qv::Import(directory.write("in.dxf", bytes).c_str(), dxf, options, report);
  }
  /// The records that these groups become, within a file that has a block A (a line from 0,0 to 4,0 and a circle of
  /// colour "by block" at 2,1) and a block B of A turned by 90 degrees.
  std::string become(std::string_view entities) {
    const std::string file = groups(
        "0 SECTION/2 HEADER/9 $ACADVER/1 AC1015/0 ENDSEC/0 SECTION/2 TABLES/0 TABLE/2 DIMSTYLE/"
        "0 DIMSTYLE/2 S/41 0/42 0/44 0/140 1/147 0/77 0/271 1/"
        "0 DIMSTYLE/2 T/41 1/42 0/44 0/342 A1/0 ENDTAB/0 ENDSEC/0 SECTION/2 BLOCKS/"
        "0 BLOCK/5 A1/8 0/2 A/70 0/10 0/20 0/0 LINE/8 0/10 0/20 0/11 4/21 0/0 CIRCLE/8 P/62 0/10 2/20 1/40 1/0 ENDBLK/"
        "0 BLOCK/8 0/2 B/70 0/10 1/20 0/0 INSERT/8 0/2 A/10 1/20 0/50 90/62 0/0 ENDBLK/"
        "0 BLOCK/8 0/2 RING/70 0/10 0/20 0/0 POINT/8 0/10 0/20 0/0 INSERT/8 0/2 RING/10 1/20 1/0 ENDBLK/0 ENDSEC/"
        "0 SECTION/2 OBJECTS/0 MLINESTYLE/2 CAPS/70 273/71 2/49 0/62 256/49 -2/62 1/0 ENDSEC/0 SECTION/2 ENTITIES");
    EXPECT_EQ(import(file + groups(entities) + groups("0 ENDSEC/0 EOF")), 1);
    std::string text = words(dxf.m_EntityList);
    for (POSITION at = dxf.m_BlockList.GetHeadPosition(); at;) {
      const auto& block = *static_cast<ACAD_BLOCK*>(dxf.m_BlockList.GetNext(at));
      text += std::string(" | ") + block.m_szName + ": " + words(block.m_EntityList);
    }
    return text;
  }
  const qv::ImportReport::Kind* kind(std::string_view name) const {
    for (const qv::ImportReport::Kind& k : report.kinds)
      if (k.name == name) return &k;
    return nullptr;
  }

  qvtest::TemporaryDirectory directory;
  DXF dxf;
  qv::ImportOptions options;
  qv::ImportReport report;

 private:
  const CShx fonts_ = G_ShapeFont;
};

struct Case {
  const char* entities;
  const char* records;
};

// Coordinates below are worked out by hand from the definition of each kind.
TEST_F(Import, EveryKindBecomesRecords) {
  options.tolerance = 0.05;
  const Case kCases[] = {
      // As they are.
      {"0 LINE/8 W/62 3/10 1/20 2/11 3/21 4", "LINE 1,2 3,4 c3 on W"},
      {"0 LINE/8 0/10 1/11 2/20 3/21 4", "LINE 1,3 2,4"},
      {"0 POINT/8 0/10 1/20 2/30 3", "POINT 1,2,3"},
      {"0 TRACE/8 0/10 0/20 0/11 1/21 0/12 0/22 1/13 1/23 1", "SOLID 0,0 1,0 0,1 1,1"},
      {"0 SOLID/8 0/10 0/20 0/11 1/21 0/12 0/22 1", "SOLID 0,0 1,0 0,1 0,1"},
      {"0 3DFACE/8 0/70 5/10 0/20 0/11 1/21 0/12 1/22 1/13 0/23 1", "LINE 1,0 1,1; LINE 0,1 0,0"},
      // Extrusion: seen from behind x runs to the left; tilted, a circle is no circle.
      {"0 ARC/8 0/10 5/20 1/40 2/50 0/51 90/210 0/220 0/230 -1", "ARC -5,1 r2 90-180"},
      {"0 ARC/8 0/10 5/20 1/40 2/50 30/51 30", "CIRCLE 5,1 r2"},
      {"0 CIRCLE/8 0/10 0/20 0/40 2/210 0/220 1/230 1", "POLYLINE/9 of many"},
      {"0 CIRCLE/8 0/10 0/20 0/40 2/210 0/220 0/230 0", "CIRCLE 0,0 r2"},
      {"0 LINE/8 0/10 0/20 0/11 1/21 0/39 2", "LINE 0,0 1,0; 3DFACE 0,0 1,0 1,0,2 0,0,2"},
      {"0 LWPOLYLINE/8 0/90 3/70 1/43 .5/38 2/10 0/20 0/42 1/10 4/20 0/10 4/20 4/210 0/220 0/230 -1",
       "POLYLINE/1 0,0,-2b-1w0.5:0.5 -4,0,-2w0.5:0.5 -4,4,-2w0.5:0.5"},
      {"0 LWPOLYLINE/8 0/10 0/20 0/40 1/41 2/10 4/20 0", "POLYLINE 0,0w1:2 4,0"},
      // Polylines: a spline's frame is left out; a mesh and a polyface become faces.
      {"0 POLYLINE/8 0/66 1/70 4/0 VERTEX/10 0/20 0/70 16/0 VERTEX/10 1/20 1/70 8/0 VERTEX/10 2/20 0/70 8/0 SEQEND",
       "POLYLINE 1,1 2,0"},
      {"0 POLYLINE/8 0/66 1/70 8/0 VERTEX/10 0/30 1/70 32/0 VERTEX/10 1/30 2/70 32/0 SEQEND", "LINE 0,0,1 1,0,2"},
      {"0 POLYLINE/8 0/66 1/70 16/71 2/72 2/0 VERTEX/10 0/20 0/70 64/0 VERTEX/10 1/20 0/70 64/0 VERTEX/10 0/20 1/70 64/"
       "0 VERTEX/10 1/20 1/70 64/0 SEQEND",
       "3DFACE 0,0 1,0 1,1 0,1"},
      {"0 POLYLINE/8 0/66 1/70 64/0 VERTEX/10 0/20 0/70 192/0 VERTEX/10 1/20 0/70 192/0 VERTEX/10 1/20 1/70 192/"
       "0 VERTEX/70 128/71 1/72 -2/73 3/0 SEQEND",
       "LINE 0,0 1,0; LINE 1,1 0,0"},
      {"0 MESH/92 3/10 0/20 0/30 0/10 1/20 0/30 0/10 1/20 1/30 0/93 4/90 3/90 0/90 1/90 2", "3DFACE 0,0 1,0 1,1 1,1"},
      // Curves: an ellipse that is round, half of one, and a spline of degree 1.
      {"0 ELLIPSE/8 0/10 1/20 1/11 0/21 2/40 1/41 0/42 1.5707963267948966", "ARC 1,1 r2 90-180"},
      {"0 ELLIPSE/8 0/10 0/20 0/11 2/21 0/40 .5/41 0/42 3.141592653589793",
       "POLYLINE 2,0 1.414,0.7071 0,1 -1.414,0.7071 -2,0"},
      {"0 SPLINE/8 0/71 1/40 0/40 0/40 1/40 1/10 0/20 0/10 4/20 4", "POLYLINE 0,0 1,1 2,2 3,3 4,4"},
      {"0 XLINE/8 0/10 0/20 0/11 1/21 0/0 LINE/8 0/10 -10/20 -10/11 10/21 10", "LINE -10,-10 10,10; LINE -11,0 11,0"},
      // References: plain, scaled (layer 0 and "by block" come from the reference), nested, repeated, in a ring.
      {"0 INSERT/8 0/2 A/10 5/20 5", "INSERT A 5,5 | A: LINE 0,0 4,0; CIRCLE 2,1 r1 c7 on P"},
      {"0 INSERT/8 L/62 5/2 a/10 5/20 5/41 -2/42 2",
       "INSERT A 5,5 c5 on L | A: LINE 0,0 -8,0 on L; CIRCLE -4,2 r2 c5 on P"},
      {"0 INSERT/8 0/62 5/2 B/10 5/20 5", "INSERT B 5,5 c5 | B: LINE 1,0 1,4; CIRCLE 0,2 r1 c5 on P"},
      {"0 INSERT/8 0/2 A/10 0/20 0/50 90/70 2/71 1/44 3",
       "INSERT A 0,0; INSERT A 0,3 | A: LINE 0,0 0,4; CIRCLE -1,2 r1 c7 on P"},
      {"0 INSERT/8 0/2 RING/10 5/20 5", "INSERT RING 5,5 | RING: POINT 0,0"},
      {"0 INSERT/8 0/2 A/66 1/10 5/20 5/0 ATTRIB/8 0/10 1/20 2/40 3/41 1/1 seven/0 SEQEND",
       "INSERT A 5,5; TEXT 1,2 h3 w1 'seven' | A: LINE 0,0 4,0; CIRCLE 2,1 r1 c7 on P"},
      // Texts.
      {"0 TEXT/8 0/10 1/20 2/40 3/41 1/50 30/1 90%%d %%130", "TEXT 1,2 h3 w1 turn30 '90\x7F \x82'"},
      {"0 TEXT/8 0/10 9/20 9/11 1/21 2/40 3/41 1/72 0/73 3/1 x", "TEXT 1,-1 h3 w1 'x'"},
      {"0 TEXT/8 0/10 1/20 2/40 3/41 1/71 4/1 x", "TEXT 1,-1 h3 w1 'x'"},
      {"0 TEXT/8 0/10 1/20 2/40 3/41 1/1 \\U+4E2D\\U+00F6", "TEXT 1,2 h3 w1 '\xD6\xD0\\U+00F6'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 {\\C1;one}\\Ptwo", "TEXT 0,-3 h3 w1 'one' c1; TEXT 0,-8 h3 w1 'two'"},
      {"0 MTEXT/8 0/10 0/20 0/11 0/21 1/40 3/71 7/1 a\\~b", "TEXT 0,0 h3 w1 turn90 'a b'"},
      // Hatches: a square with a square hole, filled and with a line every 2.
      {"0 HATCH/8 0/70 1/91 2/92 3/72 0/73 1/93 4/10 0/20 0/10 9/20 0/10 9/20 9/10 0/20 9/97 0/"
       "92 16/93 4/72 1/10 3/20 3/11 6/21 3/72 1/10 6/20 3/11 6/21 6/72 1/10 6/20 6/11 3/21 6/72 1/10 3/20 6/11 3/21 "
       "3/97 0/75 0",
       "SOLID 0,0 9,0 0,3 9,3; SOLID 0,3 3,3 0,6 3,6; SOLID 6,3 9,3 6,6 9,6; SOLID 0,6 9,6 0,9 9,9"},
      {"0 HATCH/8 0/70 0/91 1/92 3/73 1/93 4/10 0/20 0/10 9/20 0/10 9/20 4/10 0/20 4/75 0/78 1/53 0/43 1/44 0/45 1/46 "
       "2/79 2/49 4/49 -2",
       "LINE 1,0 5,0; LINE 7,0 9,0; LINE 2,2 6,2; LINE 8,2 9,2"},
      // Dimensions without a block, leaders, frames.
      {"0 DIMENSION/8 0/70 0/10 0/20 9/13 0/23 0/14 9/24 0/1  ",
       "LINE 0,0.0625 0,9.18; LINE 9,0.0625 9,9.18; LINE 0,9 9,9; SOLID 0,9 0.18,8.97 0.18,9.03 0.18,9.03; "
       "SOLID 9,9 8.82,9.03 8.82,8.97 8.82,8.97"},
      {"0 LEADER/8 0/71 0/10 0/20 0/10 5/20 5/10 9/20 5", "POLYLINE 0,0 5,5 9,5"},
      {"0 WIPEOUT/8 0/10 1/20 1/11 4/12 0/22 4/13 1/23 1/71 2/91 3/14 -.5/24 -.5/14 .5/24 -.5/14 .5/24 .5",
       "POLYLINE/1 1,5 5,5 5,1"},
      {"0 MLINE/8 0/11 0/21 0/13 0/23 1/74 1/41 0/75 0/74 1/41 -2/11 9/21 0/13 0/23 1/74 1/41 0/74 1/41 -2",
       "LINE 0,0 9,0; LINE 0,-2 9,-2"},
      // Dimensions of the other types, of a style without arrows and gaps, and one with arrows of its own.
      {"0 DIMENSION/8 0/3 S/70 1/10 -1/20 7/13 0/23 0/14 3/24 4/1  ", "LINE 0,0 -4,3; LINE 3,4 -1,7; LINE -4,3 -1,7"},
      {"0 DIMENSION/8 0/3 S/70 2/10 0/20 0/15 0/25 .5/13 0/23 0/14 4/24 0/16 1/26 1/1  ",
       "LINE 0,0.5 0,1.414; ARC 0,0 r1.414 0-90"},
      {"0 DIMENSION/8 0/3 T/70 3/10 -2/20 0/15 2/25 0/1  ",
       "LINE -2,0 2,0; LINE 2,0 6,0; CIRCLE 4,1 r1 c7 on P; LINE -2,0 -6,0; CIRCLE -4,-1 r1 c7 on P"},
      {"0 DIMENSION/8 0/3 S/70 4/10 0/20 0/15 2/25 0/11 5/21 0", "LINE 0,0 4.28,0; TEXT 4.28,-0.5 h1 w1 'R2'"},
      {"0 DIMENSION/8 0/3 S/70 5/10 2/20 2/13 3/23 0/14 0/24 3/15 0/25 0/1  ",
       "LINE 3,0 2.828,0; LINE 0,3 0,2.828; ARC 0,0 r2.828 0-90"},
      {"0 ARC_DIMENSION/8 0/3 S/70 8/10 3/20 0/13 3/23 0/14 0/24 3/15 0/25 0/11 0/21 9/53 0",
       "ARC 0,0 r3 0-90; TEXT -1.8,8.5 h1 w1 '\xA1\xD0"
       "4.7'"},
      {"0 DIMENSION/8 0/3 S/70 70/10 1/20 0/13 5/23 1/14 5/24 4/11 5/21 6",
       "LINE 5,1 5,4; TEXT 5.5,5.64 h1 w1 turn90 '4'"},
      {"0 DIMENSION/8 0/3 S/2 A/70 32/13 0/23 0/14 9/24 0/12 1/22 1", "LINE 1,1 5,1; CIRCLE 3,2 r1 c7 on P"},
      // Two cells and one below, upward.
      {"0 TOLERANCE/8 0/3 S/10 0/20 0/1 {\\Fgdt;j}%%v0.1^JA/11 0/21 1",
       "TEXT 0.5,0.5 h1 w1 turn90 'j'; POLYLINE/1 1,0 1,1.72 -1,1.72 -1,0; TEXT 0.5,2.22 h1 w1 turn90 '0.1'; "
       "POLYLINE/1 1,1.72 1,4.88 -1,4.88 -1,1.72; TEXT 2.5,0.5 h1 w1 turn90 'A'; POLYLINE/1 3,0 3,1.72 1,1.72 1,0"},
      // A blue line with an arrow to a text of colour 6, and a block twice as large.
      {"0 MULTILEADER/8 0/62 3/300 CONTEXT_DATA{/40 1/41 2/140 3/290 1/304 t/12 20/22 9/171 1/90 -1023410170/"
       "302 LEADER{/10 15/20 8/11 1/21 0/40 4/304 LEADER_LINE{/10 0/20 8/305 }/303 }/301 }/170 1/91 -1040187137/291 1",
       "LINE 0,8 15,8 c5; SOLID 0,8 3,7.5 3,8.5 3,8.5 c5; LINE 15,8 19,8 c5; TEXT 20,7 h2 w1 't' c6"},
      {"0 MLEADER/8 0/300 CONTEXT_DATA{/296 1/341 A1/15 7/25 7/16 2/26 2/36 2/46 0/301 }/170 0",
       "LINE 7,7 15,7; CIRCLE 11,9 r2 c7 on P"},
      {"0 ACAD_TABLE/8 0/2 A/10 5/20 5/11 0/21 1", "LINE 5,5 5,9; CIRCLE 4,7 r1 c7 on P"},
      // A helix is its spline; its axis is no tangent.
      {"0 HELIX/8 0/100 AcDbSpline/71 3/11 0/21 0/11 5/21 0/100 AcDbHelix/10 0/20 0/11 1/21 0/12 0/22 1/32 0/40 1",
       "LINE 0,0 5,0"},
      {"0 HATCH/8 0/62 2/70 1/91 1/92 3/73 1/93 3/10 0/20 0/10 4/20 0/10 0/20 4/75 0/450 1/452 0/463 0/63 5/421 255/"
       "463 1/63 1",
       "SOLID 0,0 4,0 0,4 0,4 c5"},
      {"0 MPOLYGON/8 0/62 1/70 1/30 0/71 1/91 1/92 2/73 1/72 0/93 3/10 0/20 0/10 4/20 0/10 0/20 4/76 1/63 3/99 0",
       "POLYLINE/1 0,0 4,0 0,4 c1; SOLID 0,0 4,0 0,4 0,4 c3"},
      {"0 OLE2FRAME/8 0/10 0/20 4/11 6/21 0/70 2", "POLYLINE/1 0,4 6,4 6,0 0,0"},
      {"0 IMAGE/8 0/10 0/20 0/11 .5/21 0/12 0/22 .5/13 8/23 4/280 0", "POLYLINE/1 0,0 4,0 4,2 0,2"},
      {"0 RAY/8 0/10 0/20 0/11 1/21 0/0 LINE/8 0/10 -10/20 -10/11 10/21 10", "LINE -10,-10 10,10; LINE 0,0 11,0"},
      {"0 ATTDEF/8 0/10 1/20 2/40 3/41 1/1 c/2 T/70 2/0 ATTDEF/8 0/10 1/20 2/40 3/1 c/2 T/70 0", "TEXT 1,2 h3 w1 'c'"},
      {"0 INSERT/8 0/2 RING/66 1/10 5/20 5/0 ATTRIB/8 0/10 1/20 2/40 3/1 x/70 1/0 ATTRIB/8 0/10 1/20 2/40 3/1 two/"
       "101 Embedded Object/10 1/20 2/40 3/71 1/1 two\\Plines/0 SEQEND",
       "INSERT RING 5,5; TEXT 1,-1 h3 w1 'two'; TEXT 1,-6 h3 w1 'lines' | RING: POINT 0,0"},
      {"0 MLINE/8 0/2 CAPS/71 1/11 0/21 0/13 0/23 1/74 1/41 0/75 0/74 1/41 -2/11 9/21 0/13 0/23 1/74 1/41 0/74 1/41 -2",
       "LINE 0,0 9,0; LINE 0,-2 9,-2 c1; LINE 0,-2 0,0; LINE 9,-2 9,0"},
      {"0 LWPOLYLINE/8 0/90 2/39 2/10 0/20 0/10 4/20 0/0 SOLID/8 0/39 1/10 0/20 0/11 1/21 0/12 0/22 1",
       "POLYLINE 0,0 4,0; 3DFACE 0,0 4,0 4,0,2 0,0,2; SOLID 0,0 1,0 0,1 0,1; 3DFACE 0,0 1,0 1,0,1 0,0,1; "
       "3DFACE 1,0 0,1 0,1,1 1,0,1; 3DFACE 0,1 0,1 0,1,1 0,1,1; 3DFACE 0,1 0,0 0,0,1 0,1,1"},
      // Groups that few files have.
      {"0 LINE/8 0/10 0/20 0/11 1/21 0/39 2/210 0/220 -1/230 0", "LINE 0,0 1,0; 3DFACE 0,0 1,0 1,-2 0,-2"},
      {"0 POLYLINE/8 0/66 1/70 0/0 VERTEX/10 0/20 0/40 1/41 2/42 1/0 VERTEX/10 4/20 0/0 SEQEND",
       "POLYLINE 0,0b1w1:2 4,0"},
      {"0 DIMENSION/8 0/3 S/70 1/10 -1/20 7/13 0/23 0/14 3/24 4/210 0/220 0/230 -1/1  ",
       "LINE 0,0 -4,3; LINE 3,4 -1,7; LINE -4,3 -1,7"},
      {"0 DIMENSION/8 0/3 S/70 0/10 0/20 5/13 0/23 0/14 9/24 0/1  /1001 ACAD/1000 DSTYLE/1002 {/1070 142/1040 1/1002 }",
       "LINE 0,0 0,5; LINE 9,0 9,5; LINE 0,5 9,5; LINE 1,6 -1,4; LINE 8,4 10,6"},
      {"0 DIMENSION/8 *ADSK_CONSTRAINTS/3 S/70 1/10 -1/20 7/13 0/23 0/14 3/24 4", ""},
      {"0 MLEADER/8 0/300 CONTEXT_DATA{/40 1/41 2/304 t/12 20/22 9/13 0/23 1/171 1/301 }/170 0",
       "TEXT 22,9 h2 w1 turn90 't'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 a\\Nb/101 Embedded Object/71 2/44 10/45 2",
       "TEXT 0,-3 h3 w1 'a'; TEXT 12,-3 h3 w1 'b'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 a\\Pb/1001 ACAD/1000 ACAD_MTEXT_COLUMN_INFO_BEGIN/1070 48/1040 10/1070 49/"
       "1040 2/1070 50/1040 4/1000 ACAD_MTEXT_COLUMN_INFO_END",
       "TEXT 0,-3 h3 w1 'a'; TEXT 12,-3 h3 w1 'b'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 \\Lu", "TEXT 0,-3 h3 w1 'u'; LINE 0,-3.6 2.16,-3.6"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 \\W2;%%p1%%%", "TEXT 0,-3 h3 w2 '\x80\x31%'"},
      {"0 TEXT/8 0/10 1/20 2/40 3/41 1/1 %%p%%%^I^ x", "TEXT 1,2 h3 w1 '\x80% ^x'"},
      {"0 HATCH/8 0/70 1/91 1/92 1/93 4/72 1/10 0/20 0/11 9/21 0/72 1/10 9/20 9/11 9/21 0/72 1/10 9/20 9/11 0/21 9/72 "
       "1/10 0/20 9/11 0/21 0/97 0/75 0",
       "SOLID 0,0 9,0 0,9 9,9"},
      {"0 HATCH/8 0/70 1/91 2/92 3/72 0/73 1/93 4/10 0/20 0/10 9/20 0/10 9/20 9/10 0/20 9/97 0/"
       "92 18/72 0/73 1/93 4/10 3/20 3/10 6/20 3/10 6/20 6/10 3/20 6/97 0/75 2",
       "SOLID 0,0 9,0 0,9 9,9"},
      // Edges of hatches: ellipses whose angles are seen from the centre, the second turned and clockwise, and a spline
      // through two points that leaves upward and comes back downward.
      {"0 HATCH/8 0/70 1/91 1/92 1/93 2/72 1/10 0/20 0/11 4/21 0/72 3/10 0/20 0/11 4/21 0/40 .5/50 0/51 45/73 1/97 0/"
       "75 0",
       "SOLID 0,0 4,0 1.051,1.051 3.403,1.051; SOLID 1.051,1.051 3.403,1.051 1.789,1.789 1.789,1.789"},
      {"0 HATCH/8 0/70 1/91 1/92 1/93 2/72 3/10 0/20 0/11 0/21 4/40 .5/50 315/51 360/73 0/72 1/10 0/20 4/11 0/21 0/"
       "97 0/75 0",
       "SOLID 0,0 0,0 -1.789,1.789 0,1.789; SOLID -1.789,1.789 0,1.789 -1.051,3.403 0,3.403; "
       "SOLID -1.051,3.403 0,3.403 0,4 0,4"},
      {"0 HATCH/8 0/70 1/91 1/92 1/93 2/72 1/10 4/20 0/11 0/21 0/72 4/94 3/73 0/74 0/95 0/96 0/97 2/11 0/21 0/11 4/21 "
       "0/"
       "12 0/22 1/13 0/23 -1/97 0/75 0",
       "SOLID 0,0 4,0 0.625,0.75 3.375,0.75; SOLID 0.625,0.75 3.375,0.75 2,1 2,1"},
      {"0 SPLINE/8 0/71 3/11 0/21 0/11 4/21 0/12 0/22 1/13 0/23 -1", "POLYLINE 0,0 0.625,0.75 2,1 3.375,0.75 4,0"},
      // Texts between two points: aligned ones grow, fitted ones become wide. Tabs, fractions, tolerances.
      {"0 TEXT/8 0/10 1/20 2/11 1/21 9.2/40 1/41 1/72 3/1 ab", "TEXT 1,2 h5 w1 turn90 'ab'"},
      {"0 TEXT/8 0/10 1/20 2/11 8.2/21 2/40 1/41 1/72 5/1 ab", "TEXT 1,2 h1 w5 'ab'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 a^Ibcdef^Ig",
       "TEXT 0,-3 h3 w1 'a'; TEXT 12,-3 h3 w1 'bcdef'; TEXT 24,-3 h3 w1 'g'"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/71 1/1 \\S1#2;",
       "TEXT 0,-1.5 h2.1 w1 '1'; TEXT 2.412,-3.6 h2.1 w1 '2'; LINE 1.512,-3.6 2.412,0.6"},
      {"0 MTEXT/8 0/10 0/20 0/40 2/71 1/1 \\S+1^ -12;x",
       "TEXT 0,-0.9 h1.4 w1 '+1'; TEXT 0,-2.5 h1.4 w1 '-12'; TEXT 3.024,-2 h2 w1 'x'"},
      // What cannot be shown is left out.
      {"0 LINE/8 0/10 1e400/20 0/11 1/21 1/0 3DSOLID/8 0/0 NOVELTY/8 0/0 LINE/8 0/60 1/10 0/20 0/11 1/21 1", ""},
  };
  for (const Case& c : kCases) EXPECT_EQ(become(c.entities), c.records) << c.entities;
  EXPECT_EQ(report.summary(), "2 LINE, 1 3DSOLID, 1 NOVELTY left out");
  const std::string file = directory.read("in.dxf");
  EXPECT_EQ(kind("NOVELTY")->line,
            std::count(file.begin(), file.begin() + static_cast<long>(file.find("NOVELTY")), '\n'));
}

TEST_F(Import, WhatIsShownOtherwiseIsTold) {
  const struct {
    const char* entities;
    const char* loss;
  } kCases[] = {
      {"0 CIRCLE/8 0/10 0/20 0/40 2/39 3", "a thickness was left out"},
      {"0 DIMENSION/8 0/3 S/70 0/10 0/20 9/13 0/23 0/14 9/24 0/1001 ACAD/1000 DSTYLE/1002 {/1070 342/1005 77/1002 }",
       "an arrow whose block the file lacks became the usual one"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/72 3/1 x", "a text in columns of letters is shown in lines"},
      {"0 MTEXT/8 0/10 0/20 0/40 3/90 1/1 x", "a fill behind a text was left out"},
      {"0 MLINE/8 0/2 CAPS/11 0/21 0/13 0/23 1/74 1/41 0/11 9/21 0/13 0/23 1/74 2/41 0/41 3",
       "the fill of a multiline was left out"},
      {"0 MLINE/8 0/11 0/21 0/13 0/23 1/74 1/41 0/11 9/21 0/13 0/23 1/74 3/41 0/41 3/41 4",
       "a multiline with gaps is shown without them"},
      {"0 TOLERANCE/8 0/1 j/10 0/20 0", "signs of a tolerance are shown as letters"},
      {"0 HATCH/8 0/70 1/91 1/92 3/73 1/93 3/10 0/20 0/10 4/20 0/10 0/20 4/450 1",
       "a gradient became its first colour"},
      {"0 TEXT/8 0/10 1/20 2/40 3/71 4/1 x", "a mirrored text is shown readable"},
      {"0 TEXT/8 0/10 1/20 2/40 3/51 15/1 x", "a slanted text is shown upright"},
      {"0 POINT/8 0/10 0/20 0/0 ENDSEC/0 SECTION/2 OBJECTS/0 SPATIAL_FILTER/71 1",
       "a reference that is cut along a border is shown whole"},
  };
  for (const auto& c : kCases) {
    become(c.entities);
    EXPECT_NE(report.summary().find(std::string(" times ") + c.loss), std::string::npos) << report.summary();
  }
}

TEST_F(Import, AnyFormOfFileIsRead) {
  const std::string body = "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n1\n20\n2\n11\n3\n21\n4\n0\nENDSEC\n0\nEOF\n";
  std::string padded;
  std::string crOnly = body;
  std::replace(crOnly.begin(), crOnly.end(), '\n', '\r');
  for (std::size_t at = 0, end; at < body.size(); at = end + 1) {
    end = body.find('\n', at);
    padded += "   " + body.substr(at, end - at) + "  \r\n";
  }
  std::string wide = std::string("AutoCAD Binary DXF\r\n\x1A", 21) + '\0';
  std::string narrow = wide;
  const auto add = [&](int code, std::string_view value) {
    wide += std::string{static_cast<char>(code), '\0'} + std::string(value);
    narrow += std::string{static_cast<char>(code)} + std::string(value);
  };
  const auto real = [](double v) { return std::string(reinterpret_cast<const char*>(&v), sizeof v); };
  using namespace std::string_view_literals;
  add(0, "SECTION\0"sv), add(2, "ENTITIES\0"sv), add(0, "LINE\0"sv), add(8, "0\0"sv), add(10, real(1)),
      add(20, real(2));
  add(11, real(3)), add(21, real(4)), add(0, "ENDSEC\0"sv), add(0, "EOF\0"sv);
  for (const std::string& file : {body, padded, crOnly, wide, narrow, "999\na comment\n" + body + "what stands behind",
                                  body.substr(0, body.find("0\nENDSEC")),  // broken off
                                  body.substr(body.find("0\nLINE"), body.find("0\nENDSEC") - body.find("0\nLINE")),
                                  "0\nSECTION\n2\nENTITIES\n\n\n" + body.substr(21)}) {  // blank lines
    ASSERT_EQ(import(file), 1) << file;
    EXPECT_EQ(words(dxf.m_EntityList), "LINE 1,2 3,4") << file;
  }
  EXPECT_EQ(report.remarks.at(0).count, 2);
  EXPECT_EQ(report.remarks.at(0).line, 5);
  ASSERT_EQ(import(body.substr(0, body.find("0\nENDSEC")) + "0\nTEXT\n8\n0\n40\n1\n1\nEOF\n7\nNO EOF\n"), 1);
  EXPECT_FALSE(report.complete) << "texts and names are no end";
  ASSERT_EQ(import(body.substr(0, body.find("0\nENDSEC"))), 1);
  EXPECT_FALSE(report.complete);
  EXPECT_EQ(import("no drawing at all"), 0);
  EXPECT_EQ(words(dxf.m_EntityList), "LINE 1,2 3,4") << "a failure leaves the document as it was";
}

TEST_F(Import, CodePagesAreKnown) {
  const struct {
    const char* header;
    const char* bytes;
    qv::CodePage page;
    const char* record;
  } kCases[] = {
      {"9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\nANSI_1252\n", "\xF8 \xE9", qv::CodePage::Windows1252,
       "\\U+00F8 \xA8\xA6"},
      {"9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\ndos850\n", "\xF8", qv::CodePage::Dos850, "\x7F"},
      {"9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\nANSI_950\n", "\xA4\xA4", qv::CodePage::Big5, "\xD6\xD0"},
      {"9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\nANSI_936\n", "\xE4\xB8\xAD", qv::CodePage::Utf8, "\xD6\xD0"},
      {"9\n$ACADVER\n1\nAC1021\n", "\xE4\xB8\xAD", qv::CodePage::Utf8, "\xD6\xD0"},
      {"",
       "\xD6\xD0\x82"
       "25",
       qv::CodePage::Gbk,
       "\xD6\xD0\x82"
       "25"},
      {"", "\xFF", qv::CodePage::Windows1252, "\\U+00FF"},
  };
  for (const auto& c : kCases) {
    ASSERT_EQ(import(std::string("0\nSECTION\n2\nHEADER\n") + c.header +
                     "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n0\n10\n0\n20\n0\n40\n1\n1\n" + c.bytes +
                     "\n0\nENDSEC\n0\nEOF\n"),
              1);
    EXPECT_EQ(report.encoding, c.page) << c.bytes;
    ASSERT_EQ(dxf.m_EntityList.GetCount(), 1);
    EXPECT_STREQ(static_cast<ACAD_TEXT*>(dxf.m_EntityList.GetHead())->m_szText, c.record) << c.bytes;
  }
}

TEST_F(Import, DrawingsFarAwayComeNearInTheUnitAskedFor) {
  const std::string far = groups(
      "0 SECTION/2 HEADER/9 $INSUNITS/70 6/0 ENDSEC/0 SECTION/2 ENTITIES/"
      "0 LINE/8 0/10 568053.449/20 5774347.227/11 568063.449/21 5774357.227/0 ENDSEC/0 EOF");
  options.unit = qv::Unit::Millimetre;
  ASSERT_EQ(import(far), 1);
  const auto& line = *static_cast<ACAD_LINE*>(dxf.m_EntityList.GetHead());
  EXPECT_EQ(report.scale, 1000);
  EXPECT_NEAR(report.offset[0] + static_cast<double>(line.m_Start.x), 568053449, 0.01);
  EXPECT_NEAR(report.offset[1] + static_cast<double>(line.m_End.y), 5774357227, 0.01);
  EXPECT_LT(line.m_End.x, 100000);
  EXPECT_EQ(std::fmod(report.offset[0], 1000), 0);
}

TEST_F(Import, LayersKeepWhatTheyCanAndNotesHoldTheRest) {
  ASSERT_EQ(
      import(groups("0 SECTION/2 TABLES/0 TABLE/2 LTYPE/70 1/0 LTYPE/2 DASH/3 d/72 65/73 2/40 3/49 2/49 -1/0 ENDTAB/"
                    "0 TABLE/2 LAYER/70 9/0 LAYER/2 ENTITIES/70 1/62 -3/6 DASH/370 50/"
                    "0 LAYER/2 A name that is longer than a field 1/70 0/62 1/290 0/"
                    "0 LAYER/2 A name that is longer than a field 2/70 0/62 1/420 3368652/0 ENDTAB/0 ENDSEC/"
                    "0 SECTION/2 ENTITIES/0 LINE/8 entities/48 2/420 255/370 35/10 0/20 0/11 1/21 1/0 ENDSEC/0 EOF")),
      1);
  ASSERT_EQ(dxf.m_nLayer, 4);
  EXPECT_STREQ(dxf.m_pLayer[0].m_szName, "ENTITIES_");
  EXPECT_EQ(dxf.m_pLayer[0].m_nColor, -3);
  EXPECT_STREQ(dxf.m_pLayer[1].m_szName, "A name that is longer than a ");
  EXPECT_STREQ(dxf.m_pLayer[2].m_szName, "A name that is longer than _2");
  const auto& line = *static_cast<ACAD_LINE*>(dxf.m_EntityList.GetHead());
  EXPECT_STREQ(line.m_szLType, "DASH_2");
  EXPECT_EQ(dxf.m_pLType[2].m_fElement[0], 4);
  EXPECT_EQ(line.m_nColor, 5);
  ASSERT_NE(report.notes.find(&line), nullptr);
  EXPECT_EQ(report.notes.find(&line)->trueColor, 255);
  EXPECT_EQ(report.notes.find(&line)->lineWeight, 35);
  const qv::DrawingNotes::Layer& layer = report.notes.layers.at(0);
  EXPECT_TRUE(layer.off && layer.frozen && layer.plotted && layer.lineWeight == 50);
  EXPECT_FALSE(report.notes.layers.at(1).plotted);
}

TEST_F(Import, NotesFollowReferencesAndTexts) {
  // A layer with a weight and a true colour, and a block that takes both from its reference.
  ASSERT_EQ(import(groups("0 SECTION/2 TABLES/0 TABLE/2 LAYER/70 1/0 LAYER/2 W/70 0/62 1/370 70/420 1122867/0 ENDTAB/"
                          "0 ENDSEC/0 SECTION/2 BLOCKS/0 BLOCK/8 0/2 A/70 0/10 0/20 0/"
                          "0 LINE/8 P/62 0/370 -2/10 0/20 0/11 4/21 0/0 ENDBLK/0 ENDSEC/0 SECTION/2 ENTITIES/"
                          "0 INSERT/8 W/2 A/10 5/20 5/0 INSERT/8 P/370 25/2 A/10 9/20 5/0 LINE/8 W/370 -2/10 1/20 1/"
                          "0 TEXT/8 0/10 0/20 0/40 1/1 %%d\\U+00F6\\U+4E2D/0 ENDSEC/0 EOF")),
            1);
  const auto noted = [&](void* record) { return report.notes.find(static_cast<ACAD_ENTITY*>(record)); };
  const auto inside = [](void* block) { return static_cast<ACAD_BLOCK*>(block)->m_EntityList.GetHead(); };
  ASSERT_EQ(report.notes.entities.size(), 5u);
  EXPECT_EQ(noted(inside(dxf.m_BlockList.GetHead()))->lineWeight, 70);
  EXPECT_EQ(noted(inside(dxf.m_BlockList.GetHead()))->trueColor, 1122867);
  EXPECT_EQ(noted(inside(dxf.m_BlockList.GetTail()))->lineWeight, 25);
  EXPECT_EQ(noted(dxf.m_EntityList.GetTail())->text, "°ö中");
}

// A length of 9.3 whose text is looked at, then its arrows.
TEST_F(Import, DimensionsFollowTheirStyles) {
  const struct {
    const char* header;
    const char* style;
    const char* overrides;
    const char* text;
  } kCases[] = {
      {"", "/3 <> mm/45 .5/271 2", "", "h1 w1 '9.50 mm'"},
      {"", "/3 m/144 -2/271 1", "", "h1 w1 '18.6m'"},
      {"", "/340 F1/271 1", "", "h1 w0.5 '9.3'"},
      {"", "/340 F2/271 1", "", "h2 w1 '9.3'"},  // a text style of a fixed height
      {"/9 $DIMSCALE/40 3/9 $DIMRND/40 2/9 $DIMLFAC/40 10/9 $DIMDEC/70 0", "", "", "h3 w1 '94'"},
      {"/9 $DIMSCALE/40 3/9 $DIMDEC/70 0", "/40 2/271 1", "", "h2 w1 '9.3'"},
      // What a dimension has of its own is words too; what other programs left behind it is none of it.
      {"", "/3 m/271 1", "1070 3/1000 <> ft/1070 140/1040 4", "h4 w1 '9.3 ft'"},
      {"", "/3 m/271 1", "1070 3/1000 /1070 271/1070 0", "h1 w1 '9'"},
      {"", "/271 1", "1002 }/1001 OTHER/1070 140/1040 7", "h1 w1 '9.3'"},
  };
  const auto read = [&](const char* header, const std::string& style, const std::string& entity) {
    return import(groups(
        std::string("0 SECTION/2 HEADER/9 $ACADVER/1 AC1015") + header +
        "/0 ENDSEC/0 SECTION/2 TABLES/0 TABLE/2 STYLE/0 STYLE/5 F1/2 NARROW/41 .5/0 STYLE/5 F2/2 HIGH/40 2/0 ENDTAB/"
        "0 TABLE/2 DIMSTYLE/0 DIMSTYLE/2 D" +
        style +
        "/42 0/44 0/140 1/78 0/0 ENDTAB/0 ENDSEC/0 SECTION/2 BLOCKS/"
        "0 BLOCK/2 DOT/10 0/20 0/0 CIRCLE/8 0/10 0/20 0/40 1/0 ENDBLK/0 ENDSEC/0 SECTION/2 ENTITIES/"
        "0 DIMENSION/8 0/3 D/70 0/10 0/20 0/13 0/23 0/14 9.3/24 0" +
        entity + "/0 ENDSEC/0 EOF"));
  };
  for (const auto& c : kCases) {
    ASSERT_EQ(read(c.header, c.style, std::string("/1001 ACAD/1000 DSTYLE/1002 {/") + c.overrides + "/1002 }"), 1);
    const std::string records = words(dxf.m_EntityList);
    const std::size_t at = records.find(" h");
    ASSERT_NE(at, std::string::npos) << records;
    EXPECT_EQ(records.substr(at + 1), c.text) << c.header << c.style << c.overrides;
  }
  // Arrows by name, as release 12 has them: both alike, or each its own.
  ASSERT_EQ(read("", "/5 dot/41 2", "/1  "), 1);
  EXPECT_EQ(words(dxf.m_EntityList), "LINE 0,0 9.3,0; CIRCLE 0,0 r2; CIRCLE 9.3,0 r2");
  ASSERT_EQ(read("", "/5 x/6 DOT/41 1/173 1", "/1  "), 1);
  EXPECT_EQ(words(dxf.m_EntityList), "LINE 0,0 9.3,0; CIRCLE 0,0 r1; SOLID 9.3,0 8.3,0.1667 8.3,-0.1667 8.3,-0.1667");
}

TEST_F(Import, LineTypesHaveTheScalesOfFileAndEntity) {
  ASSERT_EQ(import(groups("0 SECTION/2 HEADER/9 $LTSCALE/40 3/0 ENDSEC/0 SECTION/2 TABLES/0 TABLE/2 LTYPE/0 LTYPE/2 D/"
                          "73 2/40 3/49 2/49 -1/0 ENDTAB/0 ENDSEC/0 SECTION/2 ENTITIES/0 LINE/8 0/6 D/10 0/20 0/11 1/"
                          "21 0/0 LINE/8 0/6 D/48 2/10 0/20 0/11 1/21 0/0 ENDSEC/0 EOF")),
            1);
  const auto first_dash = [&](void* line) {
    for (int i = 0; i < dxf.m_nLType; ++i)
      if (std::string_view(dxf.m_pLType[i].m_szName) == static_cast<ACAD_LINE*>(line)->m_szLType)
        return dxf.m_pLType[i].m_fElement[0];
    return 0.0F;
  };
  EXPECT_EQ(first_dash(dxf.m_EntityList.GetHead()), 6);
  EXPECT_EQ(first_dash(dxf.m_EntityList.GetTail()), 12);
}

// A record holds 99 bytes; letters are 0.72 wide for each byte that is drawn.
TEST_F(Import, LongTextsAreDividedBetweenLetters) {
  const std::string a(97, 'a');
  const std::string place = "0 TEXT/8 0/10 0/20 0/40 1/41 1/1 ";
  EXPECT_EQ(become(place + a + "bcd"), "TEXT 0,0 h1 w1 '" + a + "bc'; TEXT 71.28,0 h1 w1 'd'");
  EXPECT_EQ(become(place + a + "b\\U+4E2Dd"), "TEXT 0,0 h1 w1 '" + a +
                                                  "b'; TEXT 70.56,0 h1 w1 '\xD6\xD0"
                                                  "d'");
  EXPECT_EQ(become(place + a + "\\U+00F6d"), "TEXT 0,0 h1 w1 '" + a + "'; TEXT 69.84,0 h1 w1 '\\U+00F6d'");
  EXPECT_EQ(become(place + a + "bcd/50 90"), "TEXT 0,0 h1 w1 turn90 '" + a + "bc'; TEXT 0,71.28 h1 w1 turn90 'd'");
  EXPECT_EQ(become("0 TEXT/8 0/10 0/20 0/11 72/21 0/40 1/41 1/72 2/1 " + a + "bcd"),
            "TEXT 0,0 h1 w1 '" + a + "bc'; TEXT 71.28,0 h1 w1 'd'");
  EXPECT_EQ(static_cast<ACAD_TEXT*>(dxf.m_EntityList.GetHead())->m_nJustify, 0) << "its end is not the whole text's";
  EXPECT_EQ(report.remarks.at(0).text, "a text longer than 99 bytes was divided");
}

TEST_F(Import, TraditionalLettersAreDrawnSimplified) {
  EXPECT_EQ(become("0 TEXT/8 0/10 0/20 0/40 1/41 1/1 \\U+9580\\U+7A97\\U+3400"),
            "TEXT 0,0 h1 w1 '\\U+9580\xB4\xB0\\U+3400'");
  EXPECT_EQ(report.summary(),
            "1 times a letter is shown in its simplified form; 1 times a character that the fonts lack");
  EXPECT_EQ(qv::drawn_text("\\U+9580\xB4\xB0\\U+3400"), "\xC3\xC5\xB4\xB0\xA1\xF5");
  EXPECT_EQ(qv::drawn_text("\\U+4E1F\\U+9F9C"), "\xB6\xAA\xB9\xEA") << "the first and the last of the table";
}

TEST_F(Import, ShapesAreDrawnFromTheirFiles) {
  const qvtest::TemporaryDirectory folder;
  std::string file = "AutoCAD-86 shapes 1.0\r\n\x1a";
  for (const int v : {0, 5, 2, 0, 2, 5, 13}) qvtest::put(file, static_cast<std::size_t>(v), 2);
  file += std::string("x\0", 2) + "BRACKET" + qvtest::codes({0, 0x40, 0x24, 2, 0x10, 0});
  folder.write("marks.shx", file);
  options.shapeFolders = {folder.path("")};
  const std::string drawing = groups(
      "0 SECTION/2 TABLES/0 TABLE/2 STYLE/0 STYLE/2 /70 1/3 C:\\fonts\\MARKS/0 ENDTAB/0 ENDSEC/0 SECTION/2 ENTITIES/"
      "0 SHAPE/8 0/10 1/20 1/40 2/2 bracket/50 90/0 SHAPE/8 0/10 0/20 0/40 1/2 OTHER/0 ENDSEC/0 EOF");
  ASSERT_EQ(import(drawing), 1);
  EXPECT_EQ(words(dxf.m_EntityList), "POLYLINE 1,1 1,9 -3,9");
  EXPECT_EQ(report.summary(), "1 SHAPE converted; 1 SHAPE left out");
}

TEST_F(Import, LineTypesBeyondTheTableAreDrawnAsDashes) {
  std::string types;
  for (int i = 0; i < 1000; ++i) types += "0 LTYPE/2 T" + std::to_string(i) + "/70 0/73 2/40 3/49 2/49 -1/";
  ASSERT_EQ(import(groups("0 SECTION/2 TABLES/0 TABLE/2 LTYPE/" + types +
                          "0 ENDTAB/0 TABLE/2 LAYER/0 LAYER/2 L/62 7/6 T999/0 ENDTAB/0 ENDSEC/0 SECTION/2 ENTITIES/"
                          "0 LINE/8 L/10 0/20 0/11 5/21 0/0 LWPOLYLINE/8 0/6 T999/90 3/10 0/20 0/10 4/20 0/10 4/20 3/"
                          "0 CIRCLE/8 0/6 T998/10 0/20 0/40 1/0 LINE/8 L/10 0/20 9/11 100000/21 9/0 ENDSEC/0 EOF")),
            1);
  EXPECT_EQ(dxf.m_nLType, 1000);
  EXPECT_EQ(words(dxf.m_EntityList),
            "LINE 0,0 2,0 on L; LINE 3,0 5,0 on L; LINE 0,0 2,0; POLYLINE 3,0 4,0 4,1; LINE 4,2 4,3; CIRCLE 0,0 r1; "
            "LINE 0,9 1e+05,9 on L");
  EXPECT_NE(report.summary().find("1 times a line of too many dashes is drawn solid"), std::string::npos);
}

TEST_F(Import, ObjectsOfOtherProgramsShowTheirPictures) {
  // The picture of an object: parts that tell their sizes and kinds.
  std::string bytes(8, '\0');
  const auto part = [&](char kind, std::initializer_list<double> reals, const std::string& rest = {}) {
    std::string content;
    for (const double v : reals) content.append(reinterpret_cast<const char*>(&v), sizeof v);
    content += rest;
    bytes += std::string{static_cast<char>(8 + content.size()), 0, 0, 0, kind, 0, 0, 0} + content;
  };
  const std::string three{3, 0, 0, 0};
  const auto reals = [](std::initializer_list<double> values) {
    std::string out;
    for (const double v : values) out.append(reinterpret_cast<const char*>(&v), sizeof v);
    return out;
  };
  part(1, {0, 0, 0, 9, 9, 0});
  part(14, {}, three);
  part(2, {1, 2, 0, 5, 0, 0, 1});
  part(29, {0, -1, 0, 10, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});  // turned by 90 degrees and moved
  part(4, {1, 0, 0, 2, 0, 0, 1, 1, 0, 0, 1.5707963267948966});
  part(31, {});
  part(5, {1, 0, 0, 0, 1, 0, -1, 0, 0});
  part(22, {}, std::string{6, 0, 0, static_cast<char>(0xC3)});
  part(7, {}, three + reals({0, 0, 0, 4, 0, 0, 0, 4, 0}));
  part(20, {}, three);
  part(6, {}, three + reals({0, 0, 0, 4, 0, 0, 0, 4, 0}));
  part(36, {1, 1, 0, 0, 0, 1, 0, 1, 0, 2, 1, 0}, std::string("\x2D\x4E\0\0", 4));
  part(14, {}, std::string(4, '\0'));  // the object's own colour again
  part(6, {}, std::string{1, 0, 0, 0} + reals({7, 8, 0}));
  part(2, {0, 0, 0, 1, 0, 0, 1});
  // Texts with a font: raw, underlined, then with codes and backward; a shell of a triangle and five corners.
  const auto wholes = [](std::initializer_list<int> values) {
    std::string out;
    for (const int v : values) out += {static_cast<char>(v), 0, 0, 0};
    return out;
  };
  const std::string written("%%d\0", 4);
  const std::string style = reals({2, 1, 0, 1});
  part(11, {1, 1, 0, 0, 0, 1, 1, 0, 0}, written + wholes({3, 1}) + style + wholes({0, 0, 0, 0, 0}));
  part(11, {1, 1, 0, 0, 0, 1, 1, 0, 0}, written + wholes({3, 1}) + style + wholes({0, 0, 0, 1, 0}));
  part(11, {1, 1, 0, 0, 0, 1, 1, 0, 0}, written + wholes({3, 0}) + style + wholes({1, 0, 0, 0, 0}));
  part(9, {},
       wholes({5}) + reals({0, 0, 0, 4, 0, 0, 4, 4, 0, 2, 6, 0, 0, 4, 0}) + wholes({10, 3, 0, 1, 2, 5, 0, 1, 2, 3, 4}));
  part(99, {});
  std::string hex;
  for (const char c : bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    hex += {kDigits[c >> 4 & 15], kDigits[c & 15]};
  }
  const std::string picture =
      "160 " + std::to_string(bytes.size()) + "/310 " + hex.substr(0, 254) + "/310 " + hex.substr(254);
  for (const std::string name : {"ACAD_PROXY_ENTITY", "NOVELTY"}) {
    EXPECT_EQ(become("0 " + name + "/8 0/62 1/92 9/" + picture + "/93 8/310 00"),
              "CIRCLE 1,2 r5 c3; ARC 10,1 r2 90-180 c3; ARC 0,0 r1 0-180 c3; POLYLINE/1 0,0 4,0 0,4 c6; "
              "SOLID 0,0 4,0 0,4 0,4 c6; TEXT 1,1 h2 w1 turn90 '\xD6\xD0' c6; "
              "POINT 7,8; CIRCLE 0,0 r1 c1; TEXT 1,1 h2 w1 '%%d' c1; TEXT 1,1 h2 w1 '%%d' c1; LINE 1,0.6 5.32,0.6 c1; "
              "TEXT -0.44,1 h2 w1 '\x7F' c1; 3DFACE 0,0 4,0 4,4 4,4 c1; POLYLINE/1 0,0 4,0 4,4 2,6 0,4 c1");
    EXPECT_EQ(kind(name)->becomes, "its own picture");
    EXPECT_NE(report.summary().find("a part of an object's own picture"), std::string::npos);
  }
  // Binary files hold the bytes themselves.
  const std::string fromText = words(dxf.m_EntityList);
  std::string file("AutoCAD Binary DXF\r\n\x1A\0", 22);
  const auto group = [&](int code, const std::string& value) {
    file += {static_cast<char>(code & 255), static_cast<char>(code >> 8)};
    file += value;
  };
  const auto word = [](const char* text) { return text + std::string(1, '\0'); };
  group(0, word("SECTION")), group(2, word("ENTITIES")), group(0, word("NOVELTY")), group(8, word("0"));
  group(62, std::string{1, 0}), group(92, wholes({1}));
  for (std::size_t at = 0; at < bytes.size(); at += 127) {
    const std::string chunk = bytes.substr(at, 127);
    group(310, static_cast<char>(chunk.size()) + chunk);
  }
  group(0, word("ENDSEC")), group(0, word("EOF"));
  ASSERT_EQ(import(file), 1);
  EXPECT_EQ(words(dxf.m_EntityList), fromText);
}

TEST_F(Import, SheetsShowModelSpaceThroughTheirWindows) {
  options.layout = "plan";
  ASSERT_EQ(
      import(groups("0 SECTION/2 BLOCKS/0 BLOCK/5 AA/2 *Paper_Space/70 0/10 0/20 0/0 ENDBLK/0 ENDSEC/"
                    "0 SECTION/2 ENTITIES/0 LINE/8 0/10 0/20 5/11 100/21 5/0 TEXT/8 0/67 1/10 1/20 1/40 2/41 1/1 sheet/"
                    "0 VIEWPORT/8 0/67 1/68 2/69 2/10 50/20 50/40 20/41 10/12 10/22 5/45 10/0 ENDSEC/"
                    "0 SECTION/2 OBJECTS/0 LAYOUT/100 AcDbLayout/1 Plan/71 1/330 AA/0 ENDSEC/0 EOF")),
      1);
  // Ten units high at 1:1: the window shows x from 0 to 20 about 10, 5.
  EXPECT_EQ(words(dxf.m_EntityList), "TEXT 1,1 h2 w1 'sheet'; LINE 40,50 60,50");
  // What the window hides, and what it shows otherwise.
  ASSERT_EQ(
      import(groups("0 SECTION/2 TABLES/0 TABLE/2 LAYER/0 LAYER/5 B7/2 H/62 1/0 ENDTAB/0 ENDSEC/0 SECTION/2 BLOCKS/"
                    "0 BLOCK/5 AA/2 *Paper_Space/70 0/10 0/20 0/0 ENDBLK/0 ENDSEC/0 SECTION/2 ENTITIES/"
                    "0 LINE/8 0/10 0/20 5/11 100/21 5/0 LINE/8 h/10 0/20 6/11 100/21 6/"
                    "0 VIEWPORT/8 0/67 1/68 2/69 2/10 50/20 50/40 20/41 10/12 10/22 5/45 10/90 3/331 B7/340 99/"
                    "0 ENDSEC/0 SECTION/2 OBJECTS/0 LAYOUT/100 AcDbLayout/1 Plan/71 1/330 AA/0 ENDSEC/0 EOF")),
      1);
  EXPECT_EQ(words(dxf.m_EntityList), "LINE 40,50 60,50");
  for (const char* loss : {"border of its own", "in perspective", "cut in depth"})
    EXPECT_NE(report.summary().find(loss), std::string::npos) << loss;
  options.layout = "none";
  EXPECT_EQ(import(groups("0 SECTION/2 ENTITIES/0 ENDSEC/0 EOF")), 0);
}

TEST_F(Import, WhatWouldGrowWithoutBoundsIsRefused) {
  const auto reason = [&](std::string_view name) { return kind(name) ? kind(name)->reason : std::string(); };
  become("0 INSERT/8 0/2 A/10 0/20 0/70 1000/71 1000/44 1/45 1");
  EXPECT_EQ(reason("INSERT"), "more records than one reference may make");
  become("0 INSERT/8 0/2 NONE/10 0/20 0");
  EXPECT_EQ(reason("INSERT"), "its block is not in the file");
  become(
      "0 HATCH/8 0/70 0/91 1/92 3/73 1/93 3/10 0/20 0/10 9/20 0/10 9/20 4/75 0/78 1/53 0/43 0/44 0/45 0/46 .0000001/79 "
      "0");
  EXPECT_EQ(reason("HATCH"), "a pattern of too many dashes: its border is shown");
  become("0 SPLINE/8 0/71 40/40 0/10 0/20 0/10 1/20 1");
  EXPECT_EQ(reason("SPLINE"), "a spline of too few points or too high a degree");
  become("0 SPLINE/8 0/71 3/40 5/40 nan/40 1/10 0/20 0/10 1/20 1/10 2/20 0/10 3/20 1");
  EXPECT_EQ(dxf.m_EntityList.GetCount(), 1) << "bad knots are replaced";
  // Nested blocks that double at every level.
  std::string blocks;
  for (int i = 0; i < 40; ++i) {
    const std::string inner = "0 INSERT/8 0/2 B" + std::to_string(i + 1) + "/10 0/20 0/";
    blocks +=
        "0 BLOCK/8 0/2 B" + std::to_string(i) + "/70 0/10 0/20 0/0 POINT/8 0/10 0/20 0/" + inner + inner + "0 ENDBLK/";
  }
  ASSERT_EQ(import(groups("0 SECTION/2 BLOCKS/" + blocks +
                          "0 ENDSEC/0 SECTION/2 ENTITIES/0 INSERT/8 0/2 B0/10 0/20 0/0 ENDSEC/0 EOF")),
            1);
  EXPECT_EQ(reason("INSERT"), "a block of too many entities");
}

TEST_F(Import, WhatIsBeyondALimitIsTold) {
  const auto losses = [&](std::string_view text) {
    const auto found = std::ranges::find(report.remarks, text, &qv::ImportReport::Remark::text);
    return found == report.remarks.end() || !found->loss ? 0 : found->count;
  };
  // The standard style and 999 others fit a table, and so do layer 0 and 999 others.
  std::string styles;
  std::string layers;
  for (int i = 0; i < 1002; ++i) {
    styles += "0 STYLE/2 S" + std::to_string(i) + "/41 .5/3 txt/";
    layers += "0 LAYER/2 A name that is longer than a field " + std::to_string(i) + "/62 3/";
  }
  ASSERT_EQ(import(groups("0 SECTION/2 TABLES/0 TABLE/2 LAYER/" + layers + "0 ENDTAB/0 TABLE/2 STYLE/" + styles +
                          "0 ENDTAB/0 ENDSEC/0 SECTION/2 ENTITIES/0 TEXT/8 A name that is longer than a field 1001/10 "
                          "1/20 2/40 3/1 a/7 S998/"
                          "0 TEXT/8 0/10 1/20 2/40 3/1 b/7 S1001/0 ENDSEC/0 EOF")),
            1);
  EXPECT_EQ(losses("a text style beyond the 1000th became the first"), 3);
  EXPECT_EQ(losses("the file has more layers than the 1000 of a table"), 1);
  EXPECT_EQ(dxf.m_nStyle, 1000);
  EXPECT_EQ(dxf.m_nLayer, 1000);
  EXPECT_EQ(words(dxf.m_EntityList), "TEXT 1,2 h3 w0.5 'a' on A name that is longer th_1002; TEXT 1,2 h3 w0.5 'b'");
  EXPECT_STREQ(static_cast<ACAD_TEXT*>(dxf.m_EntityList.GetHead())->m_szStyle, "S998");
  EXPECT_STREQ(static_cast<ACAD_TEXT*>(dxf.m_EntityList.GetTail())->m_szStyle, "STANDARD");
  // What was made is within the limits of the files of its own.
  const std::string saved = directory.path("saved.dxf");
  ASSERT_EQ(dxf.Write_MemDxf_To_File(saved.c_str()), 1);
  DXF again;
  again.New_MemDxf();
  ASSERT_EQ(again.Read_FileDxf_To_Mem(saved.c_str()), 1);
  EXPECT_EQ(again.m_nStyle + again.m_nLayer, 2000);

  std::string windows;
  for (int i = 0; i < 203; ++i)
    windows += "0 VIEWPORT/8 0/67 1/68 2/69 2/10 " + std::to_string(100 * i) + "/20 50/40 20/41 10/12 10/22 5/45 10/";
  options.layout = "Paper";
  become("0 LINE/8 0/10 0/20 5/11 100/21 5/" + windows + "0 POINT/67 1/8 0");
  EXPECT_EQ(losses("a window beyond the 200th was left out"), 3);
  EXPECT_EQ(dxf.m_EntityList.GetCount(), 201);
  EXPECT_EQ(kind("LINE")->taken, 1) << "what several windows show is counted once";
  options.layout.clear();

  // Twenty times what one reference may make, in references of the two entities of A.
  options.explode = true;
  options.mostOfReference = 4;
  std::string references;
  for (int i = 0; i < 45; ++i) references += "0 INSERT/8 0/2 A/10 5/20 5/";
  become(references + "0 POINT/8 0");
  EXPECT_EQ(kind("INSERT")->converted, 40);
  EXPECT_EQ(kind("INSERT")->leftOut, 5);
  EXPECT_EQ(kind("INSERT")->reason, "too many entities of references in all");
  EXPECT_EQ(dxf.m_EntityList.GetCount(), 81);
  options.mostOfReference = 1;
  become("0 ACAD_TABLE/8 0/2 A/10 5/20 5/11 0/21 1/0 POINT/8 0");
  EXPECT_EQ(kind("ACAD_TABLE")->reason, "a block of too many entities");

  // Names of kinds: those beyond the 199th are counted together, and a long name is one however long it is.
  std::string entities = "0 LINE/8 0/10 0/20 0/11 1/21 1/";
  for (int i = 0; i < 250; ++i) entities += "0 K" + std::to_string(i) + "/8 0/";
  const std::string longName(70, 'N');
  become("0 " + longName + "/8 0/0 " + longName + "/8 0/" + entities + "0 POINT/8 0");
  ASSERT_EQ(report.kinds.size(), 200u);
  EXPECT_EQ(report.kinds[0].leftOut, 2);
  EXPECT_EQ(report.kinds[0].taken, 0);
  EXPECT_EQ(report.kinds[199].name, "others");
  EXPECT_EQ(report.kinds[199].leftOut, 250 - 197);
  EXPECT_EQ(report.kinds[199].taken, 1);
}

TEST_F(Import, BlocksThatLieFarFromTheirBaseKeepTheirPlaces) {
  ASSERT_EQ(import(groups("0 SECTION/2 TABLES/0 TABLE/2 LAYER/0 LAYER/2 OFF/62 -3/0 ENDTAB/0 ENDSEC/0 SECTION/2 BLOCKS/"
                          "0 BLOCK/8 0/2 F/70 0/10 0/20 0/0 LINE/8 P/10 5000000/20 5000000/11 5000004.25/21 5000000/"
                          "0 ENDBLK/0 ENDSEC/0 SECTION/2 ENTITIES/0 INSERT/8 OFF/2 F/10 -5000000/20 -5000000/"
                          "0 ENDSEC/0 EOF")),
            1);
  // A layer that is off hides what is on it, not what the blocks on it have on other layers.
  EXPECT_EQ(words(dxf.m_EntityList), "INSERT F 0,0");
  ASSERT_EQ(dxf.m_BlockList.GetCount(), 1);
  EXPECT_EQ(words(static_cast<ACAD_BLOCK*>(dxf.m_BlockList.GetHead())->m_EntityList), "LINE 0,0 4.25,0 on P");
}

TEST_F(Import, UnitsAreGuessedFromTheSizeWhenAskedFor) {
  const struct {
    const char* header;
    qv::Unit unit;
  } kCases[] = {{"70 1/9 $EXTMIN/10 0/20 0/9 $EXTMAX/10 20/20 10", qv::Unit::Metre},
                {"70 1/9 $EXTMIN/10 -20000/20 0/9 $EXTMAX/10 0/20 10", qv::Unit::Millimetre},
                {"70 1", qv::Unit::Millimetre},
                {"70 0/9 $EXTMIN/10 0/20 0/9 $EXTMAX/10 20/20 10", qv::Unit::Inch}};
  for (const auto& c : kCases)
    for (const bool guess : {false, true}) {
      options.guessUnit = guess;
      ASSERT_EQ(import(groups(std::string("0 SECTION/2 HEADER/9 $MEASUREMENT/") + c.header +
                              "/0 ENDSEC/0 SECTION/2 ENTITIES/0 POINT/8 0/0 ENDSEC/0 EOF")),
                1);
      EXPECT_EQ(report.unit, guess ? c.unit : qv::Unit::None) << c.header;
    }
}

TEST_F(Import, CanBeGivenUp) {
  std::string points;
  for (int i = 0; i < 20000; ++i) points += "0 POINT/8 0/10 0/20 0/";
  const std::string path = directory.write("many.dxf", groups("0 SECTION/2 ENTITIES/" + points + "0 ENDSEC/0 EOF"));
  become("0 LINE/8 0/10 0/20 0/11 4/21 0");
  int asked = 0;
  EXPECT_EQ(qv::Import(path.c_str(), dxf, options, report, [&](double share) { return ++asked < 3 && share < 1; }), 0);
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(words(dxf.m_EntityList), "LINE 0,0 4,0") << "as it was";
}

TEST_F(Import, MemoryThatRunsOutLeavesTheDocumentAsItWas) {
  const qvtest::RecordingHost host;
  // Blocks that are turned, texts that need styles and notes, fills, and a place that is far away.
  const std::string file = groups(
      "0 SECTION/2 BLOCKS/0 BLOCK/8 0/2 A/70 0/10 0/20 0/0 LINE/8 0/10 0/20 0/11 4/21 0/0 ENDBLK/0 ENDSEC/"
      "0 SECTION/2 ENTITIES/0 INSERT/8 W/2 A/10 5000000/20 5000000/50 30/0 SPLINE/8 0/71 3/11 5000000/21 5000000/11 "
      "5000009/21 5000005/11 5000000/21 5000009/0 MTEXT/8 0/370 50/10 5000000/20 5000000/40 1/1 a\\P\\U+4E2D\\U+00F6/"
      "0 HATCH/8 0/70 1/91 1/92 3/73 1/93 3/10 5000000/20 5000000/10 5000004/20 5000000/10 5000000/20 5000004/75 0/"
      "0 ENDSEC/0 EOF");
  const std::string path = directory.write("in.dxf", file);
  dxf.New_MemDxf();
  dxf.Write_Line(1, 2, 0, 3, 4, 0, "0", "1", "BYLAYER");
  int n = 0;
  for (int result = 0; result == 0 && n < 5000; ++n) {
    QV_ERROR_CODE = 0;
    {
      const qvtest::FailingAllocations failing(n, qvtest::FailingAllocations::Which::All);
      result = qv::Import(path.c_str(), dxf, options, report);
      ASSERT_EQ(result == 0, failing.failed()) << n;
    }
    if (result == 0) {
      ASSERT_EQ(QV_ERROR_CODE, 301) << n;
      ASSERT_TRUE(report.notes.entities.empty()) << n;
      ASSERT_EQ(words(dxf.m_EntityList), "LINE 1,2 3,4 c1") << n;
    }
  }
  EXPECT_GT(n, 100);
  EXPECT_EQ(dxf.m_EntityList.GetCount(), 5);
}

}  // namespace
