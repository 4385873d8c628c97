// Functions of plain numbers and shapes, called as tests/data/functions.txt lists them: a name, the arguments, and
// behind "=" what is returned and then written. Arrays stand in brackets, values that a function changes behind "~";
// what it only writes has no argument and is 0 before.

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <tuple>

#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/numerics/analysis.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/geometry/numerics/polygons.h"
#include "qvtools/geometry/values/coor.h"

namespace {

struct Row {
  std::istringstream in;
  std::deque<std::vector<float>> arrays;
  std::deque<std::function<double()>> written;

  double number() {
    std::string token;
    in >> token;
    return std::strtod(token.c_str(), nullptr);
  }
  const float* array() {
    auto& values = arrays.emplace_back();
    std::string token;
    std::getline(in >> std::ws, token, ']');
    std::istringstream items(token.substr(1));
    for (float v; items >> v;) values.push_back(v);
    return values.data();
  }
  /// A value that the function writes.
  template <class T>
  T& changed() {
    const auto v = std::make_shared<T>();
    if ((in >> std::ws).peek() == '~') in.get(), *v = static_cast<T>(number());
    written.push_back([v] { return static_cast<double>(*v); });
    return *v;
  }
};

/// An argument of a type, taken from a row.
template <class T>
struct Argument {
  T value;
  explicit Argument(Row& row) : value(static_cast<T>(row.number())) {}
};
template <>
struct Argument<const float*> {
  const float* value;
  explicit Argument(Row& row) : value(row.array()) {}
};
template <class T>
struct Argument<T&> {
  T& value;
  explicit Argument(Row& row) : value(row.changed<T>()) {}
};
template <>
struct Argument<float*> {
  float* value;
  explicit Argument(Row& row) : value(&row.changed<float>()) {}
};

/// Shapes: "p x y", "l x1 y1 x2 y2" (from point to point), "b x1 y1 x2 y2 c" (an arc of an included angle), "c x y r",
/// "a x y r a b" (all fields).
template <>
struct Argument<CFShape> {
  CFShape value;
  explicit Argument(Row& row) {
    char kind = 0;
    row.in >> kind;
    float v[5] = {0, 0, 0, 0, kind == 'c' ? 6.3f : 0};
    const int count = kind == 'p' ? 2 : kind == 'l' ? 4 : kind == 'c' ? 3 : 5;
    for (int i = 0; i < count; ++i) v[i] = static_cast<float>(row.number());
    value = kind == 'l' || kind == 'b' ? CFShape(CFPoint(v[0], v[1]), CFPoint(v[2], v[3]), v[4])
                                       : CFShape(CFPoint(v[0], v[1]), v[2], v[3], v[4]);
  }
};
template <>
struct Argument<CFPoint> {
  CFPoint value;
  explicit Argument(Row& row) {
    value.x = static_cast<float>(row.number());
    value.y = static_cast<float>(row.number());
  }
};

using Call = std::function<void(Row&, std::vector<double>&)>;

template <class R, class... A>
Call by_row(R (*f)(A...)) {
  return [f](Row& row, std::vector<double>& results) {
    const std::tuple<Argument<A>...> arguments{Argument<A>(row)...};  // in braces from left to right
    const auto call = [&](const auto&... argument) { return f(argument.value...); };
    if constexpr (std::is_void_v<R>)
      std::apply(call, arguments);
    else
      results.push_back(static_cast<double>(std::apply(call, arguments)));
    for (const auto& v : row.written) results.push_back(v());
  };
}

int crossings(CFShape a, CFShape b, int flag1, int flag2, float& x1, float& y1, float& x2, float& y2) {
  CFPoint out[2] = {{0, 0}, {0, 0}};
  const int n = a.Intersect(b, out, flag1, flag2);
  x1 = out[0].x, y1 = out[0].y, x2 = out[1].x, y2 = out[1].y;
  return n;
}
void extent(CFShape s, float& x1, float& y1, float& x2, float& y2) {
  CFPoint low, high;
  s.GetRect(low, high);
  x1 = low.x, y1 = low.y, x2 = high.x, y2 = high.y;
}
/// 1 for a point, 2 for a line, 4 for an arc, 8 for a circle.
int kind(CFShape s) {
  return s.IsPoint() + 2 * s.IsLine() + 4 * s.IsArc() + 8 * s.IsCircle();
}
/// Inside a square of ten by ten, given to the right, and crossing it, given to the left.
int inside_square(CFShape s) {
  return s.Contain(CFPoint(0, 0), CFPoint(10, 10)) + 2 * s.Contain(CFPoint(10, 0), CFPoint(0, 10));
}
int at_left(CFShape s, CFPoint p) {
  return s.AtLeft(p);
}
int on_shape(CFShape s, CFPoint p, float tol) {
  return s.OnShape(p, tol);
}
int hit_shape(CFShape s, CFPoint p, float tol) {
  return s.HitTest(p, tol);
}
int over_line(CFShape s, CFPoint p, float a, float b) {
  return s.OverLine(p, a, b);
}

/// A square of side 10 whose right edge bulges by a half circle of radius 5.
CFRegion bulged() {
  CFRegion region(CFRect(0, 0, 10, 10));
  region[1].C = -3.14159274f;
  return region;
}
int shape_in_bulged(CFShape s) {
  return bulged().HitShape(s, 0) + 2 * bulged().HitShape(s, 1);
}
const CDomainEdge* bulged_domain() {
  static CArray<CDomainEdge, CDomainEdge&> edges;
  Region_To_Domain(bulged(), edges);
  return edges.GetData();
}
int point_in_bulged(CFPoint p, float tol) {
  return CPointInDomain().Point_In_Domain(4, bulged_domain(), p.x, p.y, tol);
}
int circle_at_bulged(CFPoint p, float r) {
  return CPointInDomain().Test_CrossRegon_Domain_Circle(4, bulged_domain(), p.x, p.y, r, 1e-4f);
}
/// With the corners counter-clockwise, and twice that clockwise.
int rect_at_bulged(CFPoint p, CFPoint q) {
  const float xs[] = {p.x, q.x, q.x, p.x}, ys[] = {p.y, p.y, q.y, q.y};
  const float back_x[] = {p.x, p.x, q.x, q.x}, back_y[] = {p.y, q.y, q.y, p.y};
  CPointInDomain domain;
  return domain.Test_CrossRegon_Domain_Rect(4, bulged_domain(), xs, ys, 1e-4f) +
         2 * domain.Test_CrossRegon_Domain_Rect(4, bulged_domain(), back_x, back_y, 1e-4f);
}
int device(double v) {
  return CFCoor().FPtoDP(v);
}

// clang-format off
#define QV_ROW(name) {#name, by_row(name)}
const std::map<std::string, Call> kFunctions = {
    QV_ROW(JH_GetAngle), QV_ROW(JH_Set2PI), QV_ROW(JH_TestAngleInArc), QV_ROW(JH_RotatePoint0), QV_ROW(JH_GetLenArc),
    QV_ROW(JH_TestPointIn_Circle), QV_ROW(JH_TestPointIn_Rect), QV_ROW(JH_TestPointIn_LineSection),
    QV_ROW(JH_TestPointIn_Arc), QV_ROW(JH_TestPointIn_TuPolygon), QV_ROW(JH_TestPointIn_JvBuYuanHuan),
    QV_ROW(JH_TestPointIn_Polygon), QV_ROW(JH_TestCross_Float_Domain), QV_ROW(JH_TestCrossRegon_Rect),
    QV_ROW(JH_GetCuiZu_PointToLineSection), QV_ROW(JH_GetCuiZu_PointToArc), QV_ROW(JH_GetMinDist_PointToLineSection),
    QV_ROW(JH_GetMinDist_PointToLine), QV_ROW(JH_GetLineFunction), QV_ROW(JH_GetInterPoint_Line),
    QV_ROW(JH_GetInterPoint_LineSection_LineSection), QV_ROW(JH_TestCrossRegon_LineSection_LineSection),
    QV_ROW(JH_GetInterPoint_LineSection), QV_ROW(JH_GetInterPoint_LineSection_Old),
    QV_ROW(JH_GetInterPoint_Circle_Circle), QV_ROW(JH_GetInterPoint_Circle_LineSection),
    QV_ROW(JH_GetInterPoint_LineSection_Arc), QV_ROW(JH_GetInterPoint_Arc_Arc), QV_ROW(JH_GetInterPoint_Circle_Arc),
    QV_ROW(JH_TestCrossRegon_Circle_LineSection), QV_ROW(JH_TestCross_Circle_LineSection),
    QV_ROW(JH_TestCrossRegon_Circle_Circle), QV_ROW(JH_TestCross_LineSection_Arc),
    QV_ROW(JH_TestCrossRegon_TuPolygon_JvBuYuanHuan), QV_ROW(JH_TestCrossRegon_Circle_JvBuYuanHuan),
    QV_ROW(JH_TestCrossRegon_LineSection_JvBuYuanHuan), QV_ROW(JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan),
    QV_ROW(JH_TestCrossRegon_Circle_TuPolygon), QV_ROW(JH_TestCrossRegon_LineSection_TuPolygon),
    QV_ROW(rotate_coordinate), QV_ROW(shift_coordinate), QV_ROW(get_line_angle), QV_ROW(get_two_line_angle),
    QV_ROW(max_angle_of_tri), QV_ROW(min_angle_of_tri), QV_ROW(Get_RGB), QV_ROW(get_dim_max), QV_ROW(get_dim_min),
    QV_ROW(get_dim_absmax), QV_ROW(get_dim_absmin), QV_ROW(line_offset_left), QV_ROW(segment_cross_point),
    QV_ROW(line_point_inter), QV_ROW(get_rect_jiaodian),
    QV_ROW(kind), QV_ROW(crossings), QV_ROW(extent), QV_ROW(inside_square), QV_ROW(at_left), QV_ROW(on_shape),
    QV_ROW(hit_shape), QV_ROW(over_line), QV_ROW(shape_in_bulged), QV_ROW(point_in_bulged), QV_ROW(circle_at_bulged),
    QV_ROW(rect_at_bulged), QV_ROW(device), QV_ROW(in_domain), QV_ROW(area_poli), QV_ROW(zhouchang_poli),
    QV_ROW(centroid_poli), QV_ROW(liner_inter), QV_ROW(liner_inter_2_left), QV_ROW(liner_inter_2_right)};
// clang-format on

TEST(Functions, GiveWhatTheListSays) {
  std::ifstream file(QV_SOURCE_DIR "/tests/data/functions.txt");
  int rows = 0;
  for (std::string line; std::getline(file, line);) {
    line.erase(std::find(line.begin(), line.end(), '#'), line.end());
    Row row{std::istringstream(line), {}, {}};
    std::string name, equals;
    if (!(row.in >> name)) continue;
    ++rows;
    ASSERT_TRUE(kFunctions.contains(name)) << line;
    std::vector<double> results;
    kFunctions.at(name)(row, results);
    ASSERT_TRUE(row.in >> equals && equals == "=") << "arguments of " << line;
    std::size_t i = 0;
    for (std::string expected; row.in >> expected; ++i) {
      ASSERT_LT(i, results.size()) << line;
      const double v = std::strtod(expected.c_str(), nullptr);
      EXPECT_LE(std::fabs(results[i] - v), 1e-6 * std::max(1.0, std::fabs(v))) << line << ": result " << i;
    }
    EXPECT_GT(i, 0u) << line;
  }
  EXPECT_GT(rows, 200);
}

}  // namespace
