#include "qvtools/scripts/script.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "qvtools/geometry/domains/domain.h"

namespace {

std::string written(const std::function<void(std::FILE*)>& write) {
  std::FILE* f = std::tmpfile();
  write(f);
  std::string text(static_cast<std::size_t>(std::ftell(f)), '\0');
  std::rewind(f);
  EXPECT_EQ(std::fread(text.data(), 1, text.size(), f), text.size());
  std::fclose(f);
  return text;
}

TEST(Script, Lines) {
  const float xs[] = {1, 2, 3}, ys[] = {4, 5, 6};
  const std::string text(5000, 'x');
  const struct {
    std::function<void(std::FILE*)> write;
    std::string expected;
  } cases[] = {
      {[](auto* f) { acad_circle(f, 1, 2, 3.456f); }, "circle 1.00,2.00 3.46\n"},
      {[](auto* f) { acad_line(f, 1, 2, 3, 4); }, "line 1.00,2.00 3.00,4.00 \n"},
      {[](auto* f) { acad_3dface(f, 1, 2, 3, 4, 5, 6); }, "3dface 1.00,2.00 3.00,4.00 5.00,6.00  \n"},
      {[](auto* f) { acad_pline(f, 1, 2, 3, 4, 0.5f); }, "pline 1.00,2.00 w 0.50  3.00,4.00 \n"},
      {[&](auto* f) { acad_pline_mut_p(f, 3, xs, ys, 0); }, "pline 1.00,4.00 w 0.00  2.00,5.00 3.00,6.00 \n"},
      {[&](auto* f) { acad_pline_mut_p(f, 1, xs, ys, 0); }, "pline 1.00,4.00 w 0.00  \n"},
      {[](auto* f) { acad_arc(f, 0, 0, 1, 0, 0, 1); }, "arc c 0.00,0.00 1.00,0.00 0.00,1.00\n"},
      {[](auto* f) { acad_text(f, 1, 2, "A b", 2.5f); }, "text 1.00,2.00 2.500 0.00 A b\n"},
      {[](auto* f) { acad_text_angle(f, 1, 2, "%d", 2.5f, 30); }, "text 1.00,2.00 2.50 30.00 %d\n"},
      // Half-way up an upright line, one text line to its left: 1.2 + 0.2 heights.
      {[](auto* f) { acad_text_along_line(f, 0, 0, 0, 10, 2, 1, "t", 1, 1); }, "text -1.40,5.00 1.00 90.00 t\n"},
      {[](auto* f) { acad_text_along_line(f, 0, 0, 10, 0, 0, 1, "t", 1, -1); }, "text 10.00,-1.40 1.00 0.00 t\n"},
      {[](auto* f) { acad_text_vertical_line(f, 0, 0, 10, 0, 2, 1, "t", 1, 0); }, "text 5.00,0.20 1.00 90.00 t\n"},
      // At the top of a circle, the text runs to the left from half its width to the right.
      {[](auto* f) { acad_text_along_arc(f, 0, 0, 10, 0, -10, 0, 2, 1, "abcd", 1, 0); },
       "text 1.50,9.80 1.00 180.00 abcd\n"},
      {[](auto* f) { acad_text_along_arc(f, 0, 0, 0, 10, 10, 0, 1, 0, "abcd", 1, -1); },
       "text 1.50,11.40 1.00 180.00 abcd\n"},
      {[](auto* f) { acad_layer(f, "s", "0"); }, "layer s 0 \n"},
      {[](auto* f) { acad_color(f, "1"); }, "color 1\n"},
      {[](auto* f) { acad_zoom(f, "e"); }, "zoom e\n"},
      {[](auto* f) { EXPECT_EQ(QuillonScript(f, "x"), 1); }, "\n%%%[QuillonScript%%%x%%%QuillonScript]%%%\n"},
      {[&](auto* f) { EXPECT_EQ(QuillonScript_Text(f, text.c_str(), 7, 2.5f), 1); },
       "%%%[QuillonScript%%%TextStyle=          7     2.500" + text + "%%%QuillonScript]%%%"},
      {[](auto* f) { ColorText(f, "x", 1); },
       "%%%[QuillonScript%%%TextStyle=          0     1.000x%%%QuillonScript]%%%"},
      {[](auto* f) { ColorText(f, "x", 0); },
       "%%%[QuillonScript%%%TextStyle=        255     1.000x%%%QuillonScript]%%%"},
  };
  for (const auto& c : cases) EXPECT_EQ(written(c.write), c.expected);
  EXPECT_EQ(QuillonScript_Text(nullptr, "x", 0, 1), 0);
}

TEST(Script, DomainsAreWrittenWithArcsCounterClockwise) {
  CFRegion region(CFRect(0, 0, 2, 2));
  region[1].C = 3.14159274f;
  CArray<CDomainEdge, CDomainEdge&> edges;
  const int n = Region_To_Domain(region, edges);
  EXPECT_EQ(written([&](std::FILE* f) { CPointInDomain().Draw_SCR(f, n, edges.GetData()); }),
            "line 0.00,0.00 2.00,0.00 \n"
            "arc c 2.00,1.00 2.00,2.00 2.00,0.00\n"
            "line 2.00,2.00 0.00,2.00 \n"
            "line 0.00,2.00 0.00,0.00 \n");
}

}  // namespace
