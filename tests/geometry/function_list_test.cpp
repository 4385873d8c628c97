// Functions of plain numbers, called as tests/data/functions.txt lists them: a name, the arguments, and behind "=" what
// is returned and then written. Arrays stand in brackets, values that a function changes behind "~"; what it only
// writes has no argument and is 0 before.

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <tuple>

#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/numerics/numeric.h"

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
    QV_ROW(line_point_inter), QV_ROW(get_rect_jiaodian)};
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
      EXPECT_LE(std::fabs(results[i] - v), 3e-7 * std::max(1.0, std::fabs(v))) << line << ": result " << i;
    }
    EXPECT_GT(i, 0u) << line;
  }
  EXPECT_GT(rows, 120);
}

}  // namespace
