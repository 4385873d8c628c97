#include "figure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace manual {

namespace {

constexpr const char* kLayer = "EXPLAIN";
constexpr const char* kPens = R"(
layer EXPLAIN -> 0.13 #b04a00
color 1 -> 0.25 #c01818
color 2 -> 0.25 #a08000
color 3 -> 0.25 #208020
color 4 -> 0.18 #00708c
color 5 -> 0.25 #2040c0
color 6 -> 0.35 #a020a0
color 8 -> 0.13 #909090
any -> 0.25
)";

constexpr float kTextHeight = 2.5F;  // mm of the page
constexpr float kGap = 1.1F;         // between a mark and its label
constexpr float kHead = 2;           // length of an arrowhead
constexpr float kMargin = 2;         // about the picture

constexpr float kBeyond = 1.15F;  // how far the legs of an angle pass its arc
constexpr double kDots = 150;     // an inch, of pictures of pixels

constexpr float kDegree = std::numbers::pi_v<float> / 180;

float direction(float dx, float dy) {
  return std::atan2(dy, dx) / kDegree;
}

bool plot(DXF& document, const std::string& path, double scale) {
  CFRect box = document.GetFRect();
  const double margin = kMargin * scale;
  qv::PlotOptions options;
  options.window = qv::DrawingRect{std::min(box.x1, box.x2) - margin, std::min(box.y1, box.y2) - margin,
                                   std::max(box.x1, box.x2) + margin, std::max(box.y1, box.y2) + margin};
  options.paper = qv::PaperSize{options.window->width() / scale, options.window->height() / scale};
  options.scale = scale;
  options.margin = 0;
  options.dpi = kDots;
  options.smooth = true;
  options.colors = qv::PlotColors::Color;
  std::string problem;
  const auto pens = qv::PenTable::parse(kPens, problem);
  options.pens = pens ? &*pens : nullptr;
  const qv::PlotSource sources[] = {{&document, nullptr, "", 1}};
  qv::PlotReport report;
  if (pens && qv::Plot(sources, path, options, report)) return true;
  std::fprintf(stderr, "%s: %s\n", path.c_str(), (problem + report.problem).c_str());
  return false;
}

}  // namespace

Figure::Figure(std::string directory, std::string name)
    : path_(std::move(directory) + "/" + std::move(name)), sgt_(NewMemDxf()) {
  sgt_->SetBiLiChi(50);
}

DXF& Figure::marked() {
  if (!marked_) sgt_->Add_Layer(kLayer, 2, "CONTINUOUS");
  marked_ = true;
  return *sgt_;
}

void Figure::text(float x, float y, float angle, const char* label, Side side) {
  const std::string text = qv::to_gbk(label);
  const float h = mm(kTextHeight);
  const float gap = mm(kGap);
  const float width = G_ShapeFont.GetHzWidth(text.c_str(), h, 0.75F);
  const bool left = side == Side::Left || side == Side::AboveLeft || side == Side::BelowLeft;
  const bool right = side == Side::Right || side == Side::AboveRight || side == Side::BelowRight;
  const bool above = side == Side::Above || side == Side::AboveLeft || side == Side::AboveRight;
  const bool below = side == Side::Below || side == Side::BelowLeft || side == Side::BelowRight;
  const float across = left ? -width - gap : right ? gap : -width / 2;
  const float up = above ? gap : below ? -h - gap : -h / 2;
  const float c = std::cos(angle * kDegree);
  const float s = std::sin(angle * kDegree);
  marked().Write_Text(x + across * c - up * s, y + across * s + up * c, 0, h, angle, text.c_str(), "HZ", kLayer, "2",
                      "CONTINUOUS");
}

void Figure::line(float x1, float y1, float x2, float y2, bool dashed) {
  if (!dashed) {
    marked().Write_Line(x1, y1, 0, x2, y2, 0, kLayer, "2", "CONTINUOUS");
    return;
  }
  const float length = std::hypot(x2 - x1, y2 - y1);
  const float dash = mm(1);
  for (float at = 0; at < length; at += 2 * dash) {
    const float a = at / length;
    const float b = std::min(at + dash, length) / length;
    marked().Write_Line(x1 + a * (x2 - x1), y1 + a * (y2 - y1), 0, x1 + b * (x2 - x1), y1 + b * (y2 - y1), 0, kLayer,
                        "2", "CONTINUOUS");
  }
}

void Figure::head(float x, float y, float angle) {
  const float c = std::cos(angle * kDegree) * mm(kHead);
  const float s = std::sin(angle * kDegree) * mm(kHead);
  constexpr float kHalf = 0.18F;
  marked().Write_Solid(x, y, 0, x - c - kHalf * s, y - s + kHalf * c, 0, x - c + kHalf * s, y - s - kHalf * c, 0,
                       x - c + kHalf * s, y - s - kHalf * c, 0, kLayer, "2", "CONTINUOUS");
}

void Figure::arrow(float x1, float y1, float x2, float y2) {
  line(x1, y1, x2, y2);
  head(x2, y2, direction(x2 - x1, y2 - y1));
}

void Figure::point(float x, float y, const char* label, Side side) {
  const float r = mm(0.4F);
  const float xs[] = {x - r, x + r};
  const float ys[] = {y, y};
  const float zs[] = {0, 0};
  const float bulges[] = {1, 1};
  const float widths[] = {2 * r, 2 * r};
  marked().Write_Pline(2, xs, ys, zs, bulges, 1, widths, widths, kLayer, "2", "CONTINUOUS");
  text(x, y, 0, label, side);
}

void Figure::note(float x, float y, const char* label, Side side) {
  text(x, y, 0, label, side);
}

void Figure::leader(float x, float y, float dx, float dy, const char* label) {
  const float endX = x + mm(dx);
  const float endY = y + mm(dy);
  line(x, y, endX, endY);
  const Side upright = dy > 0 ? Side::Above : Side::Below;
  text(endX, endY, 0, label, std::abs(dx) * 2 < std::abs(dy) ? upright : dx < 0 ? Side::Left : Side::Right);
}

void Figure::length(float x1, float y1, float x2, float y2, const char* label, float off) {
  const float whole = std::hypot(x2 - x1, y2 - y1);
  const float angle = direction(x2 - x1, y2 - y1);
  const float c = std::cos(angle * kDegree);
  const float s = std::sin(angle * kDegree);
  const float d = mm(off);
  const float beyond = mm(off < 0 ? -1.0F : 1.0F);
  if (off != 0) {
    line(x1, y1, x1 - s * (d + beyond), y1 + c * (d + beyond));
    line(x2, y2, x2 - s * (d + beyond), y2 + c * (d + beyond));
  }
  const float ax = x1 - s * d;
  const float ay = y1 + c * d;
  const float bx = x2 - s * d;
  const float by = y2 + c * d;
  line(ax, ay, bx, by);
  // Arrows of what is too short stand outside.
  const bool narrow = whole < mm(2.5F * kHead);
  if (narrow) {
    line(ax, ay, ax - c * mm(2 * kHead), ay - s * mm(2 * kHead));
    line(bx, by, bx + c * mm(2 * kHead), by + s * mm(2 * kHead));
  }
  head(ax, ay, narrow ? angle : angle + 180);
  head(bx, by, narrow ? angle + 180 : angle);
  // Letters stand upright or read from the right, on the side away from what is measured.
  const bool turned = angle > 90.5F || angle < -89.5F;
  const bool outward = (off >= 0) != turned;
  text((ax + bx) / 2, (ay + by) / 2, turned ? angle + 180 : angle, label, outward ? Side::Above : Side::Below);
}

void Figure::angle(float x, float y, float r, float a1, float a2, const char* label) {
  const float radius = mm(r);
  const auto at = [&](float a) {
    return CFPoint{x + radius * std::cos(a * kDegree), y + radius * std::sin(a * kDegree)};
  };
  for (const float a : {a1, a2})
    line(x, y, at(a).x + (at(a).x - x) * (kBeyond - 1), at(a).y + (at(a).y - y) * (kBeyond - 1));
  const bool clockwise = a2 < a1;
  marked().Write_Arc(x, y, 0, radius, std::min(a1, a2), std::max(a1, a2), kLayer, "2", "CONTINUOUS");
  // The head lies along its chord.
  const float step = std::min(kHead / r / kDegree / 2, std::abs(a2 - a1));
  head(at(a2).x, at(a2).y, clockwise ? a2 - 90 + step : a2 + 90 - step);
  const float middle = (a1 + a2) / 2;
  const float away = radius * kBeyond + mm(0.4F);
  const float lx = x + away * std::cos(middle * kDegree);
  const float ly = y + away * std::sin(middle * kDegree);
  const float turn = std::remainder(middle, 360.0F);
  text(lx, ly, 0, label,
       std::abs(turn) < 60    ? Side::Right
       : std::abs(turn) > 120 ? Side::Left
       : turn > 0             ? Side::Above
                              : Side::Below);
}

void Figure::axes(float x, float y, float angle, float length) {
  for (const bool up : {false, true}) {
    const float a = (up ? angle + 90 : angle) * kDegree;
    const float tipX = x + mm(length) * std::cos(a);
    const float tipY = y + mm(length) * std::sin(a);
    arrow(x, y, tipX, tipY);
    text(tipX, tipY, 0, up ? "y" : "x", up ? Side::AboveRight : Side::Right);
  }
}

void Figure::pixels(const qv::BitmapContext& bitmap) {
  saved_ = qv::SavePng(bitmap, path_ + ".png");
}

void Figure::drawing(DXF& document, const char* part) {
  const std::string path = part ? path_ + "_" + part + ".png" : path_ + ".svg";
  saved_ = plot(document, path, 1 / static_cast<double>(zoom_));
}

bool Figure::save() {
  return saved_ || plot(*sgt_, path_ + ".svg", sgt_->m_fBiLiChi / static_cast<double>(zoom_));
}

static std::string font_folder;

void set_font_folder(const std::string& folder) {
  font_folder = folder;
}

std::string font_file(const char* name) {
  return font_folder + "/" + name;
}

std::vector<NamedSnippet>& snippets() {
  static std::vector<NamedSnippet> list;
  return list;
}

bool add_snippet(const char* name, Snippet draw) {
  snippets().push_back({name, draw});
  return true;
}

}  // namespace manual
