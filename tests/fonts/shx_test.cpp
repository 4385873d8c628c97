#include "qvtools/fonts/shx.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "support/failing_allocations.h"
#include "support/font_files.h"
#include "support/recording_context.h"
#include "support/temporary_directory.h"

namespace {

using qvtest::big_font;
using qvtest::codes;
using qvtest::RecordingContext;
using qvtest::Shapes;
using qvtest::TemporaryDirectory;
using qvtest::text_font;

constexpr int kSize = 8;  // the fonts' height, so that a shape unit is a device unit at height 8
constexpr float kQuarter = std::numbers::pi_v<float> / 2;

const std::string kBar = codes({1, 0x44, 2, 8, 4, -4});  // a stroke up, and on to the right

struct Fonts {
  int load_txt(const std::string& bytes) { return font.SetTxtFont(directory.prefix().c_str(), write("t.shx", bytes)); }
  int load_hz(const std::string& bytes) { return font.SetHzFont(directory.prefix().c_str(), write("h.shx", bytes)); }
  const char* write(const char* name, const std::string& bytes) { return directory.write(name, bytes), name; }

  TemporaryDirectory directory;
  CShx font;
};

/// The segments that a text draws from (100, 100), relative to there and with y upward.
std::vector<std::array<int, 4>> strokes(CShx& font, const std::string& text, float angle = 0, int mirror = 1) {
  RecordingContext context;
  font.DrawHzShx(&context, 100, 100, text.c_str(), kSize, angle, kSize, mirror);
  std::vector<std::array<int, 4>> result;
  for (const auto& s : context.segments) {
    result.push_back({s.from.x - 100, 100 - s.from.y, s.to.x - 100, 100 - s.to.y});
  }
  return result;
}

using Strokes = std::vector<std::array<int, 4>>;

TEST(ShxTextFont, GivesDerivedClassesItsShapes) {
  struct Derived : CShx {
    using CShx::DrawShx;
    using CShx::GetWidth;
    using CShx::GetXY;
  } font;
  float dx, dy;
  font.GetXY(0x21, dx, dy);
  EXPECT_EQ(std::pair(dx, dy), std::pair(2.0F, 1.0F));
  const std::string record = std::string("A", 2) + kBar + '\0';
  const auto* const shape = reinterpret_cast<const unsigned char*>(record.data());
  EXPECT_EQ(font.GetWidth(shape), 4);
  RecordingContext context;
  float x = 100, y = 50;
  font.DrawShx(shape, &context, x, y, 2, 0, 0, -2);
  ASSERT_EQ(context.segments.size(), 1U);
  EXPECT_EQ(context.segments[0].from, CPoint(100, 50));
  EXPECT_EQ(context.segments[0].to, CPoint(100, 42));
  EXPECT_EQ(std::pair(x, y), std::pair(108.0F, 50.0F));
}

TEST(ShxTextFont, LoadsItsDocumentedForm) {
  Fonts f;
  ASSERT_EQ(f.load_txt(text_font({{'A', kBar}, {'?', "x"}, {300, "ignored"}, {'B', kBar}}, 21)), 1);
  EXPECT_EQ(f.font.m_fTxtHeight, 21.0f);
  EXPECT_EQ(f.font.m_pTxtIndex['A'], 0);
  EXPECT_EQ(f.font.m_nTxtDefault, 8);
  EXPECT_EQ(f.font.m_pTxtIndex['Z'], 8);
  EXPECT_EQ(f.font.m_pTxtIndex['B'], 8 + 3 + 9);
  EXPECT_EQ(f.load_txt(text_font({{'A', kBar}}, 9)), 0) << "the first font stays";
  EXPECT_EQ(f.font.m_fTxtHeight, 21.0f);
}

TEST(ShxTextFont, FallsBackWhereTheFontSaysNothing) {
  Fonts f;
  ASSERT_EQ(f.load_txt(text_font({{'A', kBar}}, 0)), 1);
  EXPECT_EQ(f.font.m_fTxtHeight, 6.0f);
  EXPECT_EQ(f.font.m_nTxtDefault, 0);
  EXPECT_EQ(f.font.m_pTxtIndex[255], 0);
}

TEST(ShxFonts, FailToLoadWhenCutAtAnyByte) {
  Fonts f;
  const std::string txt = text_font({{'A', kBar}, {'?', kBar}}, kSize);
  const std::string hz = big_font({{0xB0A1, kBar}, {0xB0A2, kBar}}, kSize);
  for (std::size_t n = 0; n < txt.size(); ++n) EXPECT_EQ(f.load_txt(txt.substr(0, n)), 0) << n;
  for (std::size_t n = 0; n < hz.size(); ++n) EXPECT_EQ(f.load_hz(hz.substr(0, n)), 0) << n;
  EXPECT_FALSE(f.font.m_pTxtIndex || f.font.m_pTxtData || f.font.m_pHzIndex || f.font.m_pHzData);
  EXPECT_EQ(f.font.SetTxtFont("", f.directory.path("none").c_str()), 0);
  EXPECT_EQ(f.font.SetTxtFont("", f.directory.prefix().c_str()), 0);
  EXPECT_TRUE(strokes(f.font, "A\xB0\xA1").empty());
  EXPECT_EQ(f.font.GetTxtWidth("A", 10, 1), 0.0f);
  EXPECT_EQ(f.font.GetHzWidth("\xB0\xA1", 10, 1), 0.0f);
  EXPECT_EQ(f.load_txt(txt), 1);
  EXPECT_EQ(f.load_hz(hz), 1);
}

TEST(ShxFonts, FailToLoadWhenMemoryRunsOut) {
  Fonts f;
  const std::string txt = text_font({{'A', kBar}}, kSize);
  const std::string hz = big_font({{0xB0A1, kBar}}, kSize);
  f.write("t.shx", txt);
  f.write("h.shx", hz);
  const std::string directory = f.directory.prefix();
  for (const auto& [load, name] : {std::pair(&CShx::SetTxtFont, "t.shx"), std::pair(&CShx::SetHzFont, "h.shx")}) {
    int successes = 0;
    for (bool loaded = false; !loaded; ++successes) {
      const qvtest::FailingAllocations failing(successes, qvtest::FailingAllocations::Which::All);
      loaded = (f.font.*load)(directory.c_str(), name) == 1;
      EXPECT_NE(loaded, failing.failed()) << name << successes;
    }
    EXPECT_GT(successes, 2);
  }
}

TEST(ShxShapes, AreInterpretedCodeByCode) {
  const struct {
    const char* what;
    std::string shape;
    Strokes strokes;
  } cases[] = {
      {"pen up until 1, up again after 2", codes({0x40, 1, 0x44, 2, 0x48, 1, 0x4C}), {{4, 0, 4, 4}, {0, 4, 0, 0}}},
      {"half slopes", codes({1, 0x41, 0x43, 0x45, 0x47}), {{0, 0, 4, 2}, {4, 2, 6, 6}, {6, 6, 4, 10}, {4, 10, 0, 12}}},
      {"and their opposites",
       codes({1, 0x49, 0x4B, 0x4D, 0x4F}),
       {{0, 0, -4, -2}, {-4, -2, -6, -6}, {-6, -6, -4, -10}, {-4, -10, 0, -12}}},
      {"diagonals", codes({1, 0x22, 0x26, 0x2A, 0x2E}), {{0, 0, 2, 2}, {2, 2, 0, 4}, {0, 4, -2, 2}, {-2, 2, 0, 0}}},
      {"scales", codes({1, 3, 2, 0x40, 4, 6, 0x20, 3, 0, 0x14}), {{0, 0, 2, 0}, {2, 0, 8, 0}, {8, 0, 8, 3}}},
      {"one displacement", codes({1, 8, -3, 5}), {{0, 0, -3, 5}}},
      {"displacements until (0, 0)", codes({1, 9, 1, 0, 0, 2, 0, 0, 0x20}), {{0, 0, 1, 0}, {1, 0, 1, 2}, {1, 2, 3, 2}}},
      {"the device pen stays when the position comes back", codes({1, 5, 0x40, 6, 0x24}), {{0, 0, 4, 0}, {4, 0, 0, 2}}},
      {"one place is remembered, no stack",
       codes({1, 5, 0x20, 5, 0x20, 6, 6, 2, 0x10, 1, 0x10}),
       {{0, 0, 2, 0}, {2, 0, 4, 0}, {3, 0, 4, 0}}},
      {"14 skips a vector, a scale, a displacement", codes({14, 0xF0, 14, 3, 9, 14, 8, 9, 9, 1, 0x20}), {{0, 0, 2, 0}}},
      {"arguments of unknown codes are commands", codes({1, 7, 0x20, 10, 0x24}), {{0, 0, 2, 0}, {2, 0, 2, 2}}},
  };
  for (const auto& c : cases) {
    Fonts f;
    ASSERT_EQ(f.load_txt(text_font({{'A', c.shape}}, kSize)), 1);
    Strokes seen = strokes(f.font, "A");
    std::erase_if(seen, [](const auto& s) { return s[0] == s[2] && s[1] == s[3]; });
    EXPECT_EQ(seen, c.strokes) << c.what;
  }
}

TEST(ShxShapes, SkipTheirNames) {
  Fonts f;
  std::string file = text_font({{'A', "NAME" + codes({0, 1, 0x40})}}, kSize);
  file.erase(file.find("NAME") - 1, 1);
  file[36] = static_cast<char>(file[36] - 1);
  ASSERT_EQ(f.load_txt(file), 1);
  EXPECT_EQ(strokes(f.font, "A"), (Strokes{{0, 0, 4, 0}}));
}

TEST(ShxText, FollowsItsAngleAndMirror) {
  Fonts f;
  ASSERT_EQ(f.load_txt(text_font({{'A', kBar}}, kSize)), 1);
  EXPECT_EQ(strokes(f.font, "AA"), (Strokes{{0, 0, 0, 4}, {4, 0, 4, 4}}));
  EXPECT_EQ(strokes(f.font, "AA", kQuarter), (Strokes{{0, 0, -4, 0}, {0, 4, -4, 4}}));
  EXPECT_EQ(strokes(f.font, "AA", 2 * kQuarter), (Strokes{{0, 0, 0, -4}, {-4, 0, -4, -4}}));
  EXPECT_EQ(strokes(f.font, "AA", 0, 0), (Strokes{{0, 0, 0, -4}, {4, 0, 4, -4}}));
  RecordingContext context;
  f.font.DrawTxtShx(&context, CPoint(10, 50), "AA", 16, 0, 12, 1);
  EXPECT_EQ(context.segments[0].to, CPoint(10, 42));
  EXPECT_EQ(context.segments[1].from, CPoint(16, 50));
}

TEST(ShxText, AdvancesByItsWidth) {
  Fonts f;
  // The pen goes on 4, then back 1 with the pen up; in "B" the way after the remembered place does not count.
  ASSERT_EQ(f.load_txt(text_font({{'A', codes({1, 0x40, 2, 8, -1, 0})}, {'B', codes({5, 0x50, 6, 8, 2, 3})}}, kSize)),
            1);
  EXPECT_FLOAT_EQ(f.font.GetTxtWidth("AAB", kSize, 1), 8.0f);
  EXPECT_FLOAT_EQ(f.font.GetTxtWidth("AAB", 2 * kSize, 0.75f), 12.0f);
  EXPECT_EQ(f.font.GetTxtWidth("", 10, 1), 0.0f);
  EXPECT_EQ(strokes(f.font, "AABA").back()[0], 8);
}

TEST(ShxBigFont, MapsItsCodesToRowsAndColumns) {
  Fonts f;
  const Shapes shapes = {{0xA1A1, kBar}, {0xFEFE, kBar}, {0xA0A1, kBar}, {0x8140, kBar}, {0, kBar}, {0xB0A1, kBar}};
  ASSERT_EQ(f.load_hz(big_font(shapes, 0)), 1);
  EXPECT_EQ(f.font.m_fHzHeight, 16.0f);
  const int size = static_cast<int>(kBar.size()) + 2;
  EXPECT_EQ(f.font.m_pHzIndex[0][0], 0);
  EXPECT_EQ(f.font.m_pHzIndex[93][93], size);
  EXPECT_EQ(f.font.m_pHzIndex[15][0], 5 * size);
  EXPECT_EQ(f.font.m_pHzIndex[0][1], -1);
}

TEST(ShxMixedText, UsesBothFontsOnOneBaseLine) {
  Fonts f;
  ASSERT_EQ(f.load_txt(text_font({{'A', kBar}, {0xB0, codes({1, 0x10})}}, kSize)), 1);
  ASSERT_EQ(f.load_hz(big_font({{0xB0A1, codes({1, 0xF4, 0x14, 2, 8, 32, -16})}}, 2 * kSize)), 1);
  // The big character is half as high on the device, the missing one a height wide; a lone lead byte is a byte.
  EXPECT_EQ(strokes(f.font,
                    "A\xB0\xA1"
                    "A\xB0\xA2"
                    "A\xB0"),
            (Strokes{{0, 0, 0, 4}, {4, 0, 4, 7}, {4, 7, 4, 8}, {20, 0, 20, 4}, {32, 0, 32, 4}, {36, 0, 37, 0}}));
  EXPECT_FLOAT_EQ(f.font.GetHzWidth("A\xB0\xA1"
                                    "A\xB0\xA2"
                                    "A\xB0",
                                    kSize, 1),
                  37.0f);
}

TEST(ShxFonts, AreSharedByCopies) {
  CShx kept;
  {
    Fonts f;
    ASSERT_EQ(f.load_txt(text_font({{'A', kBar}}, kSize)), 1);
    ASSERT_EQ(f.load_hz(big_font({{0xB0A1, kBar}}, kSize)), 1);
    kept = f.font;
    EXPECT_EQ(kept.m_pTxtIndex, f.font.m_pTxtIndex);
    kept = *&kept;
    const CShx another(kept);
    f.font = CShx();
  }
  EXPECT_EQ(strokes(kept, "A\xB0\xA1").size(), 2u);
}

TEST(ShxText, EndsAndStaysInBoundsWhateverTheShapesSay) {
  Fonts f;
  Shapes shapes;
  const int tails[] = {3, 4, 8, 9, 14};
  for (int i = 0; i < 5; ++i)
    shapes.emplace_back('A' + i, codes({1, 4, 255, 4, 255, 4, 255, 0x70, 8, 127, 127, tails[i]}));
  std::string file = text_font(shapes, kSize);
  file.pop_back();  // the last shape runs into the end of the file
  file[30 + 4 * 5 + 2] = static_cast<char>(file[30 + 4 * 5 + 2] - 1);
  ASSERT_EQ(f.load_txt(file), 1);
  RecordingContext context;
  for (const float size : {1.0f, 1e30f, INFINITY, NAN, -5.0f, 0.0f}) {
    f.font.DrawTxtShx(&context, INT_MAX, INT_MIN, "ABCDE\xFF", size, size, size, 1);
    f.font.GetTxtWidth("ABCDE", size, size);
  }
  for (const auto& segment : context.segments) {
    EXPECT_LE(std::abs(segment.to.x), 32767);
    EXPECT_LE(std::abs(segment.to.y), 32767);
  }
}

struct BuiltFont : testing::Test {
  BuiltFont() { loaded = font.SetTxtFont(QV_FONTS, "txt.shx"); }
  CShx font;
  int loaded = 0;
};

TEST_F(BuiltFont, HasAShapeForEveryCharacter) {
  ASSERT_EQ(loaded, 1);
  std::string present = "\x7F\x80\x81\x82\x83\x85\x8B";
  for (char c = ' '; c < 127; ++c) present += c;
  for (const char c : present) {
    const char text[] = {c, '\0'};
    RecordingContext context;
    font.DrawTxtShx(&context, 100, 100, text, 24, 0, 24, 1);
    const float advance = font.GetTxtWidth(text, 24, 1);
    if (c != '?') {
      EXPECT_NE(font.m_pTxtIndex[static_cast<unsigned char>(c)], font.m_nTxtDefault) << c;
    }
    EXPECT_EQ(context.segments.empty(), c == ' ') << c;
    EXPECT_GT(advance, 5.0f) << c;
    // Neighbours do not touch: the ink stays within the advance, with room on both sides. Only the underscore joins on.
    for (const auto& s : context.segments) {
      if (c == '_') continue;
      EXPECT_GE(s.to.x, 102) << c;
      EXPECT_LE(s.to.x, 100 + static_cast<int>(advance) - 2) << c;
      EXPECT_GE(s.to.y, 100 - 28) << c;
      EXPECT_LE(s.to.y, 100 + 8) << c;
    }
  }
}

TEST_F(BuiltFont, StandsUpright) {
  ASSERT_EQ(loaded, 1);
  qv::BitmapContext bitmap(60, 40, qv::rgb(255, 255, 255));
  font.DrawTxtShx(&bitmap, 10, 30, "L", 24, 0, 24, 1);
  // A stem over the whole height at the left, the foot at the base line.
  EXPECT_EQ(bitmap.GetPixel(13, 8), 0u);
  EXPECT_EQ(bitmap.GetPixel(13, 29), 0u);
  EXPECT_EQ(bitmap.GetPixel(20, 30), 0u);
  EXPECT_NE(bitmap.GetPixel(20, 8), 0u);
  EXPECT_NE(bitmap.GetPixel(20, 20), 0u);
}

}  // namespace
