#include "qvtools/drawing/bar_list.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <utility>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/engineering/bars.h"
#include "qvtools/services/captions.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace qv {

namespace {

double hook_length(int grade, int diameter) {
  const double d = diameter;
  const double mandrel = grade == 1 ? 2.5 * d : 4 * d;
  const double bend = (mandrel + d) * std::numbers::pi * 135 / 360 - (mandrel / 2 + d);
  return bend + std::max(10 * d, 75.0);
}

double to_step(double value, double step) {
  return std::round(value / step) * step;
}

/// The length of all bars of a position in m, and their mass in kg, as the list has them: what is printed adds up.
double listed_length(const BarList::Bar& bar) {
  return to_step(to_step(BarList::Length(bar), 1) * bar.count / 1000, 0.01);
}

double listed_mass(const BarList::Bar& bar) {
  return to_step(BarMass(bar.diameter, listed_length(bar)), 0.1);
}

std::string rounded(double value) {
  return std::to_string(std::lround(value));
}

std::string with_decimals(const char* format, double value) {
  return FormattedText<64>(format, value).text;
}

std::string size_text(int grade, int diameter) {
  char text[64] = "";
  CBase_SGT::FormString_GJ_nqd(text, 1, grade, diameter);
  return std::string(text).substr(text[0] == '\0' ? 0 : 1);  // without the count
}

constexpr int kMostPoints = 9;

/// A picture in its cell: a bar of a few points, and the lengths of its legs beside them. Shares of the cell's room.
struct Picture {
  int n;
  double x[kMostPoints];
  double y[kMostPoints];
  struct Leg {
    double BarList::Bar::*value;
    double x;  // middle of the text, its base line
    double y;
    Across across;
  };
  int legs;
  Leg leg[3];
};

using Bar = BarList::Bar;
constexpr Picture kPictures[] = {
    {2, {0.1, 0.9}, {0.3, 0.3}, 1, {{&Bar::a, 0.5, 0.38, Across::Center}}},
    {3,
     {0.1, 0.8, 0.8},
     {0.25, 0.25, 0.85},
     2,
     {{&Bar::a, 0.45, 0.33, Across::Center}, {&Bar::b, 0.82, 0.4, Across::Left}}},
    {4,
     {0.2, 0.2, 0.8, 0.8},
     {0.85, 0.25, 0.25, 0.85},
     3,
     {{&Bar::a, 0.5, 0.33, Across::Center}, {&Bar::b, 0.18, 0.4, Across::Right}, {&Bar::c, 0.82, 0.4, Across::Left}}},
    {6,
     {0.04, 0.22, 0.36, 0.64, 0.78, 0.96},
     {0.85, 0.85, 0.2, 0.2, 0.85, 0.85},
     3,
     {{&Bar::a, 0.5, 0.28, Across::Center}, {&Bar::b, 0.26, 0.25, Across::Right}, {&Bar::c, 0.84, 0.42, Across::Left}}},
    {9,
     {0.504, 0.444, 0.42, 0.42, 0.74, 0.74, 0.42, 0.42, 0.48},
     {0.623, 0.85, 0.85, 0.15, 0.15, 0.85, 0.85, 0.76, 0.533},
     2,
     {{&Bar::a, 0.58, 0.22, Across::Center}, {&Bar::b, 0.4, 0.32, Across::Right}}},
    {4, {0.2, 0.1, 0.9, 0.8}, {0.55, 0.3, 0.3, 0.55}, 1, {{&Bar::a, 0.5, 0.38, Across::Center}}},
};

const Picture& picture_of(BarShape shape) {
  return kPictures[std::clamp(static_cast<int>(shape), 0, static_cast<int>(std::size(kPictures)) - 1)];
}

void draw_picture(CBase_SGT& sgt, const Bar& bar, const CFRect& cell) {
  const Picture& picture = picture_of(bar.shape);
  float x[kMostPoints];
  float y[kMostPoints];
  for (int i = 0; i < picture.n; ++i) {
    x[i] = cell.x1 + static_cast<float>(picture.x[i]) * cell.Width();
    y[i] = cell.y1 + static_cast<float>(picture.y[i]) * cell.Height();
  }
  sgt.Draw_XianGangJin(picture.n, x, y);
  for (int i = 0; i < picture.legs; ++i) {
    const Picture::Leg& leg = picture.leg[i];
    DrawSheetText(sgt, cell.x1 + static_cast<float>(leg.x) * cell.Width(),
                  cell.y1 + static_cast<float>(leg.y) * cell.Height(), sgt.m_fZiGao[0], rounded(bar.*leg.value).c_str(),
                  leg.across);
  }
}

}  // namespace

double BarList::Length(const Bar& bar) {
  if (bar.length > 0) return bar.length;
  const double hooks = 2 * hook_length(bar.grade, bar.diameter);
  switch (bar.shape) {
    case BarShape::Straight:
      return bar.a;
    case BarShape::Bent:
      return bar.a + bar.b;
    case BarShape::BentTwice:
      return bar.a + bar.b + bar.c;
    case BarShape::Cranked:
      return bar.a + 2 * bar.b + 2 * bar.c;
    case BarShape::Stirrup:
      return 2 * (bar.a + bar.b) + hooks;
    case BarShape::Tie:
      return bar.a + hooks;
  }
  return 0;
}

void BarList::Add(Bar bar) {
  bars_.push_back(std::move(bar));
}

std::vector<BarList::Sum> BarList::Sums() const {
  std::vector<Sum> sums;
  for (const Bar& bar : bars_) {
    const auto same = [&](const Sum& sum) { return sum.grade == bar.grade && sum.diameter == bar.diameter; };
    auto sum = std::ranges::find_if(sums, same);
    if (sum == sums.end()) sum = sums.insert(sums.end(), {bar.grade, bar.diameter, 0, 0});
    sum->length += listed_length(bar);
    sum->mass += listed_mass(bar);
  }
  std::ranges::sort(sums, {}, [](const Sum& sum) { return std::pair(sum.grade, sum.diameter); });
  return sums;
}

double BarList::Mass() const {
  double mass = 0;
  for (const Sum& sum : Sums()) mass += sum.mass;
  return mass;
}

CFRect BarList::Draw(CBase_SGT& sgt, float x, float top, double mostHeight) const {
  constexpr double kShapeWidth = 42;
  constexpr double kRowHeight = 11;
  SheetTable::Look look;
  look.textHeight = 3;
  look.mostHeight = mostHeight;
  SheetTable table({{11}, {kShapeWidth}, {14}, {19}, {12}, {18}, {19}}, look);
  table.SetTitle(captions::kBarList);
  table.AddHeader({captions::kBarMark, captions::kBarShape, captions::kBarSize, captions::kBarLength,
                   captions::kBarCount, captions::kTotalLength, captions::kTotalMass});
  for (const Bar& bar : bars_) {
    table.AddRow({bar.mark, "", size_text(bar.grade, bar.diameter), rounded(Length(bar)), std::to_string(bar.count),
                  with_decimals("%.2f", listed_length(bar)), with_decimals("%.1f", listed_mass(bar))},
                 kRowHeight);
  }
  const SheetTable::Place place = table.Draw(sgt, x, top);
  for (std::size_t i = 0; i < bars_.size(); ++i) draw_picture(sgt, bars_[i], place.Cell(static_cast<int>(i) + 1, 1));

  look.mostHeight = 0;
  SheetTable sums({{27}, {36}, {36}, {36}}, look);
  sums.AddHeader({captions::kBarSize, captions::kTotalLength, captions::kUnitMass, captions::kTotalMass});
  for (const Sum& sum : Sums())
    sums.AddRow({size_text(sum.grade, sum.diameter), with_decimals("%.2f", sum.length),
                 with_decimals("%.3f", BarMass(sum.diameter, 1)), with_decimals("%.1f", sum.mass)});
  sums.AddRow({captions::kSum, "", "", with_decimals("%.1f", Mass())});
  const CFRect below = sums.Draw(sgt, x, place.all().y1 - 4 * sgt.m_fBiLiChi).all();
  return place.all() | below;
}

}  // namespace qv
