#include "qvtools/fonts/shape_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support/font_files.h"
#include "support/recording_context.h"
#include "support/temporary_directory.h"

namespace {

using qv::ShapeFile;
using qv::ShapeOutline;
using qvtest::codes;
using qvtest::put;
using Kind = ShapeFile::Kind;

using Records = std::vector<std::pair<int, std::string>>;

/// The records of shapes, that of the font first.
Records with_head(Records shapes, const std::string& head) {
  for (auto& [code, bytes] : shapes) bytes = '\0' + bytes + '\0';
  shapes.insert(shapes.begin(), {0, "name" + std::string(1, '\0') + head});
  return shapes;
}

std::string shapes_file(const Records& shapes, const std::string& head = codes({10, 3, 0, 0})) {
  std::string file = "AutoCAD-86 shapes 1.0\r\n\x1a" + std::string(4, '\0');
  const Records records = with_head(shapes, head);
  put(file, records.size(), 2);
  for (const auto& [code, bytes] : records) put(file, static_cast<std::size_t>(code), 2), put(file, bytes.size(), 2);
  for (const auto& [code, bytes] : records) file += bytes;
  return file;
}

std::string unifont(const Records& shapes) {
  std::string file = "AutoCAD-86 unifont 1.0\r\n\x1a";
  const Records records = with_head(shapes, codes({10, 3, 0, 0, 0, 0}));
  put(file, records.size(), 2);
  for (const auto& [code, bytes] : records) {
    put(file, static_cast<std::size_t>(code), 2);
    put(file, bytes.size(), 2);
    file += bytes;
  }
  return file;
}

std::string big_font(const Records& shapes, const std::string& head, std::size_t ranges) {
  std::string file = "AutoCAD-86 bigfont 1.0\r\n\x1a";
  const Records records = with_head(shapes, head);
  put(file, 8, 2), put(file, records.size(), 2), put(file, ranges, 2);
  for (std::size_t i = 0; i < ranges; ++i) put(file, 0xA1 + i, 2), put(file, 0xA1 + i, 2);
  std::size_t at = file.size() + 8 * records.size();
  for (const auto& [code, bytes] : records) {
    put(file, static_cast<std::size_t>(code >> 8), 1), put(file, static_cast<std::size_t>(code & 255), 1);
    put(file, bytes.size(), 2), put(file, at, 4);
    at += bytes.size();
  }
  for (const auto& [code, bytes] : records) file += bytes;
  return file;
}

ShapeFile loaded(const std::string& bytes) {
  ShapeFile file;
  EXPECT_EQ(file.Load(bytes), 1) << file.error();
  return file;
}

struct Drawn {
  double length = 0;                         // with the pen down
  double low[2] = {0, 0}, high[2] = {0, 0};  // of what is drawn
  double x = 0, y = 0;                       // where the pen ends
};

Drawn drawn(const ShapeOutline& outline) {
  Drawn d;
  for (const auto& p : outline.points) {
    if (p.drawn) {
      d.length += std::hypot(p.x - d.x, p.y - d.y);
      for (const auto& [x, y] : {std::pair{p.x, p.y}, {d.x, d.y}}) {
        d.low[0] = std::min(d.low[0], x), d.high[0] = std::max(d.high[0], x);
        d.low[1] = std::min(d.low[1], y), d.high[1] = std::max(d.high[1], y);
      }
    }
    d.x = p.x, d.y = p.y;
  }
  return d;
}

TEST(ShapeFile, DrawsEveryInstruction) {
  constexpr double kPi = std::numbers::pi;
  const double start = 55 * kPi / 180, end = 95 * kPi / 180;
  struct Case {
    const char* what;
    std::string shape;
    double length, x, y, high;
  };
  const Case cases[] = {
      {"the pen begins on the paper", codes({0x40}), 4, 4, 0, 0},
      {"scales", codes({4, 6, 3, 2, 8, 1, 2}), std::hypot(3, 6), 3, 6, 6},
      {"places that are kept", codes({5, 0x44, 6, 2, 0x20}), 4, 2, 0, 4},
      {"what is for vertical writing", codes({14, 9, 1, 1, 2, 2, 0, 0, 0x10}), 1, 1, 0, 0},
      {"a quarter clockwise from the top", codes({10, 5, -0x22}), 2.5 * kPi, 5, -5, 0},
      {"a whole turn", codes({10, 2, 0x40}), 4 * kPi, 0, 0, 2},
      {"an arc from 55 to 95 degrees", codes({11, 56, 28, 0, 3, 0x12}), 3 * (end - start),
       3 * (std::cos(end) - std::cos(start)), 3 * (std::sin(end) - std::sin(start)), 3 * (1 - std::sin(start))},
      {"half a circle by its bulge, below its chord", codes({12, 10, 0, 127}), 5 * kPi, 10, 0, 0},
      {"bulges, and a straight one", codes({13, 10, 0, -127, 5, 0, 0, 0, 0}), 5 * kPi + 5, 15, 0, 5},
      {"a shape within it", codes({2, 0x30, 1, 7, 66, 0x20}), std::sqrt(2.0) + 2, 6, 1, 1},
  };
  for (const Case& c : cases) {
    const ShapeFile file = loaded(shapes_file({{65, c.shape}, {66, codes({0x12})}}));
    const Drawn d = drawn(file.outline(*file.find(65), 0.001));
    EXPECT_NEAR(d.length, c.length, 0.02) << c.what;
    EXPECT_NEAR(d.x, c.x, 0.05) << c.what;
    EXPECT_NEAR(d.y, c.y, 0.05) << c.what;
    EXPECT_NEAR(d.high[1], c.high, 0.05) << c.what;
  }
}

TEST(ShapeFile, KnowsWhatIsPlain) {
  const Records bars = {{0xA1A1, codes({0x44})}};
  EXPECT_TRUE(loaded(shapes_file({{65, codes({1, 8, 7, 10, 0x44})}})).is_plain()) << "10 is a distance there";
  EXPECT_FALSE(loaded(shapes_file({{65, codes({10, 5, 2})}})).is_plain());
  EXPECT_TRUE(loaded(big_font(bars, codes({16, 2, 0, 0}), 1)).is_plain());
  EXPECT_FALSE(loaded(big_font(bars, codes({16, 2, 0, 0}), 2)).is_plain());
  EXPECT_TRUE(loaded(big_font(bars, codes({16, 0, 2, 16, 0}), 1)).extended());
  EXPECT_FALSE(loaded(unifont({{65, codes({0x44})}})).is_plain());
  ShapeFile file;
  EXPECT_EQ(file.Load(std::string("AutoCAD drawing")), 0);
  EXPECT_EQ(file.error(), "it is no shape file");
}

/// What CShx draws of a character at a height of 1000 units, from the origin, y upward.
Drawn drawn_by_shx(CShx& font, const std::string& text) {
  qvtest::RecordingContext context;
  ShapeOutline outline;
  font.DrawHzShx(&context, 0, 0, text.c_str(), 1000, 0, 1000, 0);
  for (const auto& s : context.segments) {
    outline.points.push_back({static_cast<double>(s.from.x), static_cast<double>(s.from.y), false});
    outline.points.push_back({static_cast<double>(s.to.x), static_cast<double>(s.to.y), true});
  }
  return drawn(outline);
}

/// A plain font of one character is drawn by CShx as wanted, to a hundredth of its height.
void expect_plain(const qv::PlainFont& plain, const std::string& text, const Drawn& wanted, double height) {
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.write("plain.shx", plain.bytes);
  CShx font;
  EXPECT_EQ((text.size() == 2 ? qv::LoadBigFont : qv::LoadTextFont)(font, path.c_str()), 1);
  EXPECT_GE(plain.taken, 1);
  const double k = 1000 / height;
  const Drawn d = drawn_by_shx(font, text);
  EXPECT_NEAR(d.high[0], wanted.high[0] * k, 10) << text;
  EXPECT_NEAR(d.high[1], wanted.high[1] * k, 10) << text;
  EXPECT_NEAR(d.low[1], wanted.low[1] * k, 10) << text;
  EXPECT_NEAR(d.length, wanted.length * k, 0.02 * wanted.length * k) << text;
  EXPECT_NEAR(static_cast<double>(font.GetHzWidth(text.c_str(), 1000, 1)), wanted.x * k, 10) << text;
}

TEST(PlainFont, DrawsWhatTheFontDraws) {
  const std::string ring = codes({2, 8, 8, 4, 1, 10, 4, 0x00, 2, 8, 6, -4});
  const ShapeFile text = loaded(shapes_file({{65, ring}}));
  const Drawn wanted = drawn(text.outline(*text.find(65), 0.001));
  EXPECT_NEAR(wanted.high[1], 8, 0.01);
  expect_plain(qv::plain_text_font(text), "A", wanted, 10);

  const ShapeFile unicode = loaded(unifont({{0xB0, ring}}));
  const qv::PlainFont degree = qv::plain_text_font(unicode);
  expect_plain(degree, "\x7F", wanted, 10);

  const ShapeFile chinese = loaded(unifont({{0x4E2D, ring}, {65, ring}}));
  const qv::PlainFont big = qv::plain_big_font(chinese);
  expect_plain(big, "\xD6\xD0", wanted, 10);
  EXPECT_EQ(big.without, 1) << "A has no place in a big font";

  // The same character of another code page.
  const ShapeFile japanese = loaded(big_font({{0x9286, ring}}, codes({10, 0, 0, 0}), 1));
  const qv::PlainFont renumbered = qv::plain_big_font(japanese, qv::CodePage::ShiftJis);
  expect_plain(renumbered, "\xD6\xD0", wanted, 10);
}

// A box of 16 by 16, half as wide and put 4 to the right by the character that is composed of it.
TEST(PlainFont, ComposesExtendedCharacters) {
  const std::string box = codes({9, 16, 0, 0, 16, -16, 0, 0, -16, 0, 0});
  const std::string composed = codes({2, 7, 0, 0xA1, 0xA1, 4, 2, 8, 12, 8, 20, 0});
  const ShapeFile font = loaded(big_font({{0xA1A1, box}, {0xB0A1, composed}}, codes({16, 0, 2, 16, 0}), 2));
  const Drawn d = drawn(font.outline(*font.find(0xB0A1), 0.01));
  EXPECT_DOUBLE_EQ(d.high[0], 12);
  EXPECT_DOUBLE_EQ(d.high[1], 14);
  EXPECT_DOUBLE_EQ(d.length, 2 * (8 + 12));
  EXPECT_DOUBLE_EQ(d.x, 20);
  const qv::PlainFont plain = qv::plain_big_font(font);
  EXPECT_EQ(plain.taken, 2);
  const ShapeFile made = loaded(plain.bytes);
  EXPECT_NEAR(drawn(made.outline(*made.find(0xB0A1), 1)).length * 16 / made.above(), 40, 0.5);
}

TEST(ShapeFile, HostileFilesEndSoon) {
  const std::string itself = codes({7, 65, 7, 65, 7, 65});
  const ShapeFile file = loaded(shapes_file({{65, itself + codes({0x10})}}));
  EXPECT_LE(file.outline(*file.find(65), 0.01).points.size(), 65536U);
  const std::string whole = big_font({{0xA1A1, codes({12, 10, 0, 127})}}, codes({16, 0, 2, 16, 0}), 2);
  for (std::size_t n = 0; n < whole.size(); ++n) {
    ShapeFile cut;
    if (cut.Load(whole.substr(0, n)) && !cut.shapes().empty()) cut.outline(cut.shapes()[0], 0.01);
  }
}

}  // namespace
