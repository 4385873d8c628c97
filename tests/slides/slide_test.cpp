#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "qvtools/dxf/model/document.h"
#include "qvtools/slides/slide_library.h"
#include "support/recording_context.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

using qvtest::TemporaryDirectory;

namespace {

/// Bytes from their description: words as decimal or x and hexadecimal numbers, bytes with a b before.
std::string bytes(const std::string& description) {
  std::istringstream in(description);
  std::string out, token;
  while (in >> token) {
    const bool one = token[0] == 'b', hexadecimal = token[0] == 'x';
    const int v = std::stoi(token.substr(one || hexadecimal), nullptr, hexadecimal ? 16 : 10);
    out += static_cast<char>(v);
    if (!one) out += static_cast<char>(v >> 8);
  }
  return out;
}

const std::string kHeader("AutoCAD Slide\r\n\x1A\0", 17);

std::string level2() {
  return kHeader + "V" + bytes("b2 640 480 x5A80 xCB 2 x1234");
}
std::string level1() {
  const double aspect = 1.25;
  std::string block = "V" + bytes("b1 640 480 0 0");
  block.append(reinterpret_cast<const char*>(&aspect), 7);  // the last byte of the number is not in the file
  return kHeader + block;
}

int read(CWxSlide& slide, const std::string& bytes) {
  const TemporaryDirectory directory;
  return slide.Read_SLD(directory.write("a.sld", bytes).c_str());
}

/// "255 x1,y1 x2,y2;" for lines, "254 …" with four points, "n;" for colours.
std::string items(const CWxSlide& slide) {
  std::string text;
  for (const CSlideItem& item : slide.m_Items) {
    text += std::to_string(item.m_byKind);
    const int points = item.m_byKind == 255 ? 2 : item.m_byKind == 254 ? 4 : 0;
    for (int i = 0; i < points; ++i)
      text +=
          ' ' + std::to_string(static_cast<int>(item.m_fX[i])) + ',' + std::to_string(static_cast<int>(item.m_fY[i]));
    text += ';';
  }
  return text;
}

TEST(Slides, EveryRecordKindIsRead) {
  const struct {
    const char *what, *records, *items;
  } cases[] = {
      {"vector", "10 20 30 40 xFC00", "255 10,20 30,40;"},
      {"offset", "10 20 30 40 xFB05 b-2 b1 b3", "255 10,20 30,40;255 15,18 11,23;"},
      {"common end", "10 20 30 40 xFEFF b4 xFE01 b1", "255 10,20 30,40;255 10,20 9,24;255 9,24 10,25;"},
      {"offsets wrap", "x7FFF 0 0 0 xFE01 b0", "255 32767,0 0,0;255 32767,0 -32768,0;"},
      {"colours", "xFF03 xFF00", "3;7;"},
      {"four corners", "xFD00 4 -1 xFD00 1 2 xFD00 3 4 xFD00 5 6 xFD00 -7 -8 xFD00 4 1 xFF02",
       "254 1,2 3,4 5,6 7,8;2;"},
      {"three corners", "xFD00 3 -1 xFD00 1 2 xFD00 3 4 xFD00 5 6", "254 1,2 3,4 5,6 5,6;"},
      {"two corners", "xFD00 2 -1 xFD00 1 2 xFD00 3 4", "254 1,2 3,4 0,0 0,0;"},
      {"a fill that breaks off", "xFD00 3 -1 xFD00 1 2 xFD00", ""},
      {"a vertex of another kind is the last word lost", "xFD00 3 -1 xFE01 xFF02 xFC00", "2;"},
      {"not a fill", "xFD01 xFF02", "2;"},
      {"an unknown record ends", "xFF02 x8000 xFF03", "2;"},
      {"end of slide", "xFF02 xFC00 xFF03", "2;"},
  };
  for (const auto& c : cases) {
    for (const std::string& header : {level1(), level2()}) {
      CWxSlide slide;
      EXPECT_EQ(read(slide, header + bytes(c.records)), 1) << c.what;
      EXPECT_EQ(items(slide), c.items) << c.what;
      EXPECT_EQ(slide.m_nHighX, 640);
    }
  }
}

TEST(Slides, RecordsAreReadOneByOne) {
  const TemporaryDirectory directory;
  const std::string rest = bytes("20 30 40  b-2 b1 b3  b1  4 -1 xFD00 1 2 xFD00 3 4 xFD00 5 6 xFD00 7 8");
  std::FILE* const file = std::fopen(directory.write("records", rest).c_str(), "rb");
  ASSERT_TRUE(file);
  CWxSlide slide;
  const struct {
    int record;
    void (CWxSlide::*read)(std::FILE*);
  } records[] = {{10, &CWxSlide::Read_Line},
                 {0xFB05, &CWxSlide::Read_Offset},
                 {0xFE01, &CWxSlide::Read_Common_Pt},
                 {0xFF03, &CWxSlide::Change_Color},
                 {0xFD00, &CWxSlide::Read_Solid}};
  for (const auto& r : records) {
    slide.m_nRecord = static_cast<unsigned short>(r.record);
    (slide.*r.read)(file);
  }
  EXPECT_EQ(std::fgetc(file), EOF) << "none is left";
  std::fclose(file);
  EXPECT_EQ(items(slide), "255 10,20 30,40;255 15,18 11,23;255 15,18 16,19;3;254 1,2 3,4 5,6 7,8;");
}

TEST(Slides, HeadersOfBothLevels) {
  CWxSlide slide;
  EXPECT_EQ(read(slide, "AutoCAD Slide\r\n\x1A" + std::string(60, 'x')), 0);
  EXPECT_EQ(read(slide, ""), 0);
  EXPECT_TRUE(slide.m_Items.empty());
  read(slide, level2());
  EXPECT_NEAR(slide.m_fAspect, 1.3327, 1e-3);
  read(slide, level1());
  EXPECT_EQ(slide.m_nHighY, 480);
  EXPECT_LT(std::fabs(slide.m_fAspect), 1) << "the number's last byte reads as 0";
  EXPECT_EQ(CWxSlide().Read_SLD("/no/such/slide.sld"), 0);
}

TEST(Slides, AreReadFromAnywhereCutAnywhere) {
  const std::string slide = level2() + bytes("1 2 3 4 xFD00 3 -1 xFD00 1 2 xFD00 3 4 xFD00 5 6 xFE01 b1 xFC00");
  for (std::size_t size = 0; size <= slide.size(); ++size) {
    CWxSlide cut;
    EXPECT_EQ(read(cut, slide.substr(0, size)), size >= 19 ? 1 : 0);
    EXPECT_LE(cut.m_Items.size(), 3U);
  }
  // Two slides behind each other: the stream stands behind the first.
  const TemporaryDirectory directory;
  std::FILE* file = std::fopen(directory.write("two", slide + slide).c_str(), "rb");
  CWxSlide both;
  EXPECT_EQ(both.Read_SLD(file), 1);
  EXPECT_EQ(std::ftell(file), static_cast<long>(slide.size()));
  EXPECT_EQ(both.Read_SLD(file), 1);
  EXPECT_EQ(both.m_Items.size(), 6U);
  std::fclose(file);
}

TEST(Slides, DrawingCallsAppendItems) {
  CWxSlide slide;
  slide.SetColor(0);
  slide.SetColor(259);
  slide.MoveTo(1, 2);
  slide.LineTo_Relative(2, 2);
  slide.Draw_Rect_LB(2, 1, 0, 0, 90);
  EXPECT_EQ(items(slide), "0;3;255 1,2 3,4;255 0,0 0,2;255 0,2 -1,2;255 -1,2 -1,0;255 -1,0 0,0;");
  slide.Clear();
  slide.Draw_Pline(100, 100, 200, 100, 4, 8);
  EXPECT_EQ(items(slide), "254 0,-2 0,2 0,-4 0,4;") << "around the origin";
}

TEST(Slides, AreFittedAndDrawn) {
  CWxSlide slide;
  slide.Draw_Line(0, 0, 100, 0);
  CRect place(0, 0, 220, 110);
  EXPECT_EQ(slide.SetScale(&place), 0) << "no height";
  slide.Draw_Line(0, 0, 100, 50);
  const CRect narrow(0, 0, 1, 100);
  EXPECT_EQ(slide.SetScale(&narrow), 0);
  slide.SetColor(1);
  slide.Draw_Solid(0, 0, 100, 0, 100, 50, 0, 50);
  qvtest::RecordingContext dc;
  slide.Draw(&dc, &place);
  EXPECT_EQ(dc.calls, "M10,105 L210,105 M10,105 L210,5 F ");
  EXPECT_EQ(dc.segments[0].color, 0xFFFFFFU);
  EXPECT_EQ(dc.fills[0].color, 0x0000FFU);
  dc.clear();
  dc.metafile = true;
  slide.Draw(&dc, &place);
  EXPECT_EQ(dc.segments[0].color + dc.fills[0].color, 0U);
  EXPECT_EQ(CWxSlide().GetRect(), CRect());
}

TEST(Slides, BecomeScriptsAndDrawings) {
  CWxSlide slide;
  slide.SetColor(200);
  slide.Draw_Line(1, 2, 3.5F, 4);
  slide.Draw_Solid(0, 0, 1, 0, 1, 1, 0, 1);
  const TemporaryDirectory directory;
  EXPECT_EQ(slide.Form_SCR(directory.path("a.scr").c_str()), 1);
  EXPECT_EQ(directory.read("a.scr"),
            "color 56\r\nline 1.000,2.000 3.500,4.000 \r\nsolid 0.000,0.000 1.000,0.000 1.000,1.000 0.000,1.000 \r\n");
  EXPECT_EQ(slide.Form_SCR(directory.path("none/a.scr").c_str()), 0);
  DXF dxf;
  dxf.New_MemDxf();
  EXPECT_EQ(Form_Dxf(&dxf, &slide), 1);
  ASSERT_EQ(dxf.m_EntityList.GetCount(), 2);
  EXPECT_EQ(static_cast<ACAD_LINE*>(static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetHead()))->m_nColor, 56);
}

/// A library of slides under their names, with `declared` as the first slide's offset when it is given.
std::string library(const std::vector<std::pair<std::string, std::string>>& slides, int declared = -1) {
  std::string text("AutoCAD Slide Library 1.0\r\n\x1A");
  text.resize(32);
  std::size_t offset = 32 + 36 * (slides.size() + 1);
  std::string bodies;
  for (const auto& [name, body] : slides) {
    std::string entry = name;
    entry.resize(32);
    const int at = declared >= 0 && bodies.empty() ? declared : static_cast<int>(offset + bodies.size());
    text += entry + bytes(std::to_string(at & 0xFFFF) + ' ' + std::to_string(at >> 16));
    bodies += body;
  }
  return text + std::string(36, '\0') + bodies;
}

TEST(SlideLibraries, SlidesAreFoundByNameAndIndex) {
  const std::string a = level2() + bytes("xFF01 xFC00");
  const std::string b = level2() + bytes("xFF02 xFF03 xFC00");
  const TemporaryDirectory directory;
  const std::string path = directory.write(
      "lib.slb", library({{"DOOR", a}, {std::string(32, 'W'), b}, {"../X", a}, {"a\nb", a}, {"Com1", a}}));
  CWxSlideLib lib;
  ASSERT_EQ(lib.Open_SLB(path.c_str()), 1);
  EXPECT_EQ(lib.m_nCount, 5);
  CWxSlide slide;
  EXPECT_EQ(lib.Read_SLD("door", &slide), 1);
  EXPECT_EQ(items(slide), "1;");
  EXPECT_EQ(lib.Read_SLD(1, &slide), 1);
  EXPECT_EQ(lib.Read_SLD(std::string(32, 'w').c_str(), &slide), 1);
  EXPECT_EQ(items(slide), "1;2;3;2;3;");
  EXPECT_EQ(lib.Read_SLD("none", &slide) + lib.Read_SLD(5, &slide) + lib.Read_SLD(-1, &slide), 0);
  EXPECT_EQ(lib.Pick_SLD("Door", directory.prefix().c_str()), 1);
  EXPECT_EQ(directory.read("DOOR.SLD"), a);
  for (const int refused : {2, 3, 4}) EXPECT_EQ(lib.Pick_SLD(refused, directory.prefix().c_str()), 0) << refused;
  qvtest::RecordingHost host;
  EXPECT_EQ(lib.Pick_SLD("Door", directory.path("no/such/").c_str()), 1);
  EXPECT_EQ(host.boxes.size(), 1U) << "what cannot be written is told";
  EXPECT_EQ(lib.SLB2SLD(directory.prefix().c_str()), 1);
  EXPECT_EQ(directory.read(std::string(32, 'W') + ".SLD"), b);

  CWxSlide picked;
  EXPECT_EQ(CWxSlideLib().Read_SLB_SLD(CString((directory.prefix() + "lib.door").c_str()), &picked), 1);
  EXPECT_EQ(CWxSlideLib().Read_SLB_SLD("lib", &picked), 0);
  EXPECT_EQ(CWxSlideLib().Read_SLB_SLD(CString((directory.prefix() + "other.door").c_str()), &picked), 0);
}

TEST(SlideLibraries, OffsetsAreCheckedAgainstTheFile) {
  const std::string a = level2() + bytes("xFF01");
  const TemporaryDirectory directory;
  for (const int declared : {0, 31, 33, 100000, -2147483647, 0x7FFFFFFF}) {
    CWxSlideLib lib;
    lib.Open_SLB(directory.write("bad.slb", library({{"A", a}, {"B", a}}, declared)).c_str());
    CWxSlide slide;
    for (int i = 0; i < lib.m_nCount; ++i) {
      lib.Read_SLD(i, &slide);
      EXPECT_LE(lib.m_Directory[static_cast<std::size_t>(i)].m_nLength, 1000U);
    }
  }
  CWxSlideLib lib;
  EXPECT_EQ(lib.Open_SLB(directory.write("x.slb", "AutoCAD Slide Library").c_str()), 0);
  EXPECT_EQ(lib.Open_SLB(directory.path("none.slb").c_str()), 0);
  EXPECT_EQ(lib.SLB2SLD(directory.prefix().c_str()), 0);
}

}  // namespace
