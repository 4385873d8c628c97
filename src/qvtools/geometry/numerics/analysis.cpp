#include "qvtools/geometry/numerics/analysis.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

#include "qvtools/services/captions.h"
#include "qvtools/services/messages.h"

namespace {

constexpr double kSameAbscissa = 1e-5;

// The partial sum of `trapzd` between its stages.
thread_local double trapezoid_sum = 0;

double value_of(float (*f)(float), double x) {
  return f(static_cast<float>(x));
}

bool same_abscissa(double a, double b) {
  return a == b || std::fabs(a - b) <= kSameAbscissa;
}

double between_entries(const float* xs, const float* ys, int k, double x) {
  const double slope = (static_cast<double>(ys[k + 1]) - ys[k]) / (static_cast<double>(xs[k + 1]) - xs[k]);
  return ys[k] + (x - xs[k]) * slope;
}

enum class Side { Left, Right };

double value_in_jump_table(int n, const float* xs, const float* ys, float x, Side side) {
  if (n < 1 || !(x >= xs[0] && x <= xs[n - 1])) return 0;
  // [first, last) are the entries within 1e-5 of x: the table is ascending.
  const auto* first = std::partition_point(xs, xs + n, [x](float v) { return v < x && !same_abscissa(v, x); });
  const auto* last = std::partition_point(first, xs + n, [x](float v) { return v < x || same_abscissa(v, x); });
  if (first != last) return ys[(side == Side::Left ? first : last - 1) - xs];
  // x lies strictly between two entries, unless the table is in disorder.
  const int k = (std::max)(0, (std::min)(static_cast<int>(first - xs) - 1, n - 2));
  return n < 2 ? ys[0] : between_entries(xs, ys, k, x);
}

double value_at(int n, const float* xs, const float* ys, float x, Side side) {
  if (n < 1) return 0;
  const float inside = (std::max)(xs[0], (std::min)(x, xs[n - 1]));
  return same_abscissa(inside, x) ? value_in_jump_table(n, xs, ys, inside, side) : 0;
}

/// The limit of a table's function from one side, which is 0 where that side lies outside the table.
double limit_at(int n, const float* xs, const float* ys, float x, Side side) {
  if (n < 1 || same_abscissa(x, side == Side::Left ? xs[0] : xs[n - 1])) return 0;
  return value_at(n, xs, ys, x, side);
}

/// A table being written apart from the input tables, then copied over them.
class Sum {
 public:
  explicit Sum(int most)
      : xs_(new (std::nothrow) float[static_cast<std::size_t>(most) + 1]),
        ys_(new (std::nothrow) float[static_cast<std::size_t>(most) + 1]) {
    if (!good()) tell_error(301, "Out of memery in add_seg_ment_function");
  }
  bool good() const { return xs_ && ys_; }
  void add(float x, double y) {
    xs_[static_cast<std::size_t>(count_)] = x;
    ys_[static_cast<std::size_t>(count_++)] = static_cast<float>(y);
  }
  int store(float* xs, float* ys) const {
    std::copy_n(xs_.get(), count_, xs);
    std::copy_n(ys_.get(), count_, ys);
    return count_;
  }

 private:
  std::unique_ptr<float[]> xs_;
  std::unique_ptr<float[]> ys_;
  int count_ = 0;
};

/// Calls visit(x) once for every abscissa of two ascending tables; those within 1e-5 of the last one are the same.
void each_abscissa(int n1, const float* xs1, int n2, const float* xs2, const auto& visit) {
  bool any = false;
  float last = 0;
  for (int i = 0, k = 0; i < n1 || k < n2;) {
    const float x = k >= n2 || (i < n1 && xs1[i] <= xs2[k]) ? xs1[i++] : xs2[k++];
    if (any && same_abscissa(x, last)) continue;
    any = true;
    last = x;
    visit(x);
  }
}

}  // namespace

float trapzd(float (*f)(float), float a, float b, int n) {
  const double width = static_cast<double>(b) - a;
  if (n <= 1) {
    trapezoid_sum = 0.5 * width * (value_of(f, a) + value_of(f, b));
    return static_cast<float>(trapezoid_sum);
  }
  const long long points = 1LL << (std::min)(n - 2, 30);
  const double step = width / static_cast<double>(points);
  double x = a + 0.5 * step, sum = 0;
  for (long long i = 0; i < points; ++i, x += step) sum += value_of(f, x);
  trapezoid_sum = 0.5 * (trapezoid_sum + width * sum / static_cast<double>(points));
  return static_cast<float>(trapezoid_sum);
}

float integeration_romberg(float (*f)(float), float a, float b) {
  constexpr int kStages = 20, kPoints = 5;
  constexpr double kAccuracy = 1e-4;
  float h[kStages + 1] = {1}, s[kStages + 1] = {};
  float ss = 0;
  for (int j = 0; j < kStages; ++j) {
    s[j] = trapzd(f, a, b, j + 1);
    if (j + 1 >= kPoints) {
      float dss = 0;
      polint(h + j + 1 - kPoints, s + j + 1 - kPoints, kPoints, 0, &ss, &dss);
      if (std::fabs(dss) <= kAccuracy * std::fabs(ss) || std::fabs(ss) < kAccuracy || QV_ERROR_CODE != 0) return ss;
    }
    h[j + 1] = 0.25f * h[j];
  }
  tell_error(0, qv::captions::kRombergIterations);
  return ss;
}

void polint(const float* xa, const float* ya, int n, float x, float* y, float* dy) {
  if (n < 1) return;
  const auto size = static_cast<std::size_t>(n);
  const std::unique_ptr<double[]> c(new (std::nothrow) double[size]), d(new (std::nothrow) double[size]);
  if (!c || !d) tell_error(301, "Out of memery in polint");
  if (QV_ERROR_CODE != 0 || !c || !d) return;
  int closest = 0;
  for (int i = 0; i < n; ++i) {
    if (std::fabs(1.0 * x - xa[i]) < std::fabs(1.0 * x - xa[closest])) closest = i;
  }
  std::copy_n(ya, n, c.get());
  std::copy_n(ya, n, d.get());
  double value = ya[closest], correction = 0;
  // `below` is the entry under the path through the tableau that stays nearest to x.
  int below = closest - 1;
  for (int column = 1; column < n; ++column) {
    for (int i = 0; i < n - column; ++i) {
      const auto k = static_cast<std::size_t>(i);
      const double ho = static_cast<double>(xa[i]) - x, hp = static_cast<double>(xa[i + column]) - x;
      if (ho == hp) {
        tell_error(301, "Error in polint");
        if (QV_ERROR_CODE != 0) return;
      }
      const double ratio = (c[k + 1] - d[k]) / (ho - hp);
      d[k] = hp * ratio;
      c[k] = ho * ratio;
    }
    correction =
        2 * (below + 1) < n - column ? c[static_cast<std::size_t>(below + 1)] : d[static_cast<std::size_t>(below--)];
    value += correction;
  }
  *y = static_cast<float>(value);
  *dy = static_cast<float>(correction);
}

float two_divide_equ(float (*f)(float), float a, float b) {
  double low = a, high = b;
  double fa = value_of(f, low);
  const double fb = value_of(f, high);
  if (fa * fb > 0) tell_error(30, "No result in Two_divide_equ !");
  if (QV_ERROR_CODE == 0) {
    for (int i = 0; i < 1000 && std::fabs(high - low) >= 1e-4; ++i) {
      const double middle = (low + high) / 2, fm = value_of(f, middle);
      if (fa * fm <= 0) {
        high = middle;
      } else {
        low = middle;
        fa = fm;
      }
    }
  }
  return static_cast<float>((low + high) / 2);
}

float liner_inter(const float* xs, const float* ys, int n, float x) {
  if (n < 2) return n == 1 ? ys[0] : 0;
  // The first interval whose end is not below x; the first and last intervals reach beyond the table.
  const int k = static_cast<int>(std::lower_bound(xs + 1, xs + n - 1, x) - xs) - 1;
  const double width = static_cast<double>(xs[k + 1]) - xs[k];
  if (std::fabs(width) < 1e-20) {
    tell_error(202, qv::captions::kInterpolationPoints);
    return static_cast<float>(ys[k] + (1.0 * x - xs[k]) * ((1.0 * ys[k + 1] - ys[k]) / 1e-20));
  }
  return static_cast<float>(between_entries(xs, ys, k, x));
}

float liner_inter_2_left(int n, const float* xs, const float* ys, float x) {
  return static_cast<float>(value_in_jump_table(n, xs, ys, x, Side::Left));
}

float liner_inter_2_right(int n, const float* xs, const float* ys, float x) {
  return static_cast<float>(value_in_jump_table(n, xs, ys, x, Side::Right));
}

int add_segment_function(int n1, const float* xs1, const float* ys1, int n2, const float* xs2, const float* ys2,
                         float* xs, float* ys) {
  Sum sum((std::max)(n1, 0) + (std::max)(n2, 0));
  if (!sum.good()) return 0;
  each_abscissa(n1, xs1, n2, xs2, [&](float x) {
    sum.add(x, value_at(n1, xs1, ys1, x, Side::Left) + value_at(n2, xs2, ys2, x, Side::Left));
  });
  return sum.store(xs, ys);
}

int add_segment_function_2(int n1, const float* xs1, const float* ys1, int n2, const float* xs2, const float* ys2,
                           float* xs, float* ys) {
  Sum sum(2 * ((std::max)(n1, 0) + (std::max)(n2, 0)));
  if (!sum.good()) return 0;
  each_abscissa(n1, xs1, n2, xs2, [&](float x) {
    const double left = limit_at(n1, xs1, ys1, x, Side::Left) + limit_at(n2, xs2, ys2, x, Side::Left);
    const double right = limit_at(n1, xs1, ys1, x, Side::Right) + limit_at(n2, xs2, ys2, x, Side::Right);
    if (left == right) return sum.add(x, left);
    sum.add(x, left);
    sum.add(x, right);
  });
  return sum.store(xs, ys);
}
