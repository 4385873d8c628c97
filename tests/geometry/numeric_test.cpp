#include "qvtools/geometry/numerics/numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "geometry/random_case.h"
#include "qvtools/geometry/numerics/analysis.h"
#include "qvtools/geometry/numerics/polygons.h"
#include "qvtools/geometry/numerics/vectors.h"
#include "qvtools/services/captions.h"
#include "support/failing_allocations.h"
#include "support/recording_host.h"

namespace {

using qvtest::Random;
using qvtest::RecordingHost;

TEST(Numeric, SmallHelpers) {
  float xs[] = {1, 2}, ys[] = {3, 4};
  shift_points(2, xs, ys, 1, 2);
  EXPECT_TRUE(xs[1] == 3 && ys[0] == 5);
  const double least = get_line_angle(0, 0, 1, -1e-300);
  EXPECT_TRUE(least >= 0 && least < 6.283185307179586) << least;
  EXPECT_EQ(get_dist(1.0, 2.0, 3.0, 3.0, 4.0, 5.0), 3 * std::sqrt(4.0 / 3));
}

TEST(Polygons, PointRecords) {
  const POINT_2D points[] = {{0, 0, 9}, {10, 0, 9}, {10, 10, 9}, {0, 10, 9}};
  EXPECT_EQ(point_in_area(4, points, 10, 5), 1);
  EXPECT_EQ(point_in_area(4, points, 11, 5), 0);
  EXPECT_EQ(point_in_area(0, points, 5, 5), 0);
}

TEST(Gaussj, InvertsAndSolves) {
  Random random(20291);
  for (int n = 1; n <= 30; ++n) {
    const auto size = static_cast<std::size_t>(n);
    std::vector<double> a(size * size), b(size * 2), inverse, x;
    for (double& v : a) v = random.real(-1, 1);
    for (double& v : b) v = random.real(-1, 1);
    for (std::size_t i = 0; i < size; ++i) a[i * size + i] += 8;
    inverse = a;
    x = b;
    gaussj(inverse.data(), n, x.data(), 2);
    std::vector<double> ax(size * 2), unit(size * size);
    mut_matrix_1(a.data(), x.data(), ax.data(), n, n, 2);
    mut_matrix_1(a.data(), inverse.data(), unit.data(), n, n, n);
    for (std::size_t i = 0; i < ax.size(); ++i) ASSERT_NEAR(ax[i], b[i], 1e-9);
    for (std::size_t i = 0; i < unit.size(); ++i) ASSERT_NEAR(unit[i], i % (size + 1) == 0, 1e-9);
  }
}

TEST(Gaussj, ThePivotComesFromTheExchangedRead) {
  // Row 1 column 0 is compared by row 0 column 1, so that 9 is passed over for the last candidate that ties with less.
  RecordingHost host;
  float a[] = {0, 1, 9, 0}, b[] = {2, 27};
  gaussj(a, 2, b, 1);
  EXPECT_FLOAT_EQ(b[0], 3);
  EXPECT_FLOAT_EQ(b[1], 2);
  float one[] = {0}, right[] = {1};
  gaussj(one, 1, right, 1);
  EXPECT_EQ(host.MessageText(), "Singular matrix -2 in gaussj\r\n");
  EXPECT_EQ(QV_ERROR_CODE, 0);
  EXPECT_TRUE(std::isinf(right[0])) << "goes on";
  double nan[] = {NAN, NAN, NAN, NAN, NAN, NAN, NAN, NAN, NAN}, rest[] = {1, 2, 3};
  gaussj(nan, 3, rest, 1);
  EXPECT_NE(host.MessageText().find("Singular matrix -1 in gaussj"), std::string::npos);
  QV_ERROR_CODE = 5;
  float kept[] = {2};
  gaussj(kept, 1, right, 1);
  EXPECT_EQ(kept[0], 2) << "nothing is done";
}

TEST(Analysis, IntegrationAndRoots) {
  RecordingHost host;
  static int calls;
  calls = 0;
  EXPECT_EQ(integeration_romberg(
                [](float) {
                  ++calls;
                  return 0.0f;
                },
                0, 1),
            0);
  EXPECT_EQ(calls, 17) << "five stages";
  EXPECT_NEAR(integeration_romberg([](float x) { return std::sin(x); }, 0, 3.14159265f), 2, 1e-4);
  EXPECT_EQ(host.MessageText(), "");
  integeration_romberg([](float) { return static_cast<float>(++calls); }, 0, 1);
  EXPECT_NE(host.MessageText().find(qv::captions::kRombergIterations), std::string::npos);
  EXPECT_NEAR(two_divide_equ([](float x) { return x * x - 2; }, 0, 2), 1.41421356, 1e-4);
  EXPECT_NEAR(two_divide_equ([](float x) { return x; }, 0, 2), 0, 1e-4) << "a root at the left end";
  two_divide_equ([](float) { return 1.0f; }, 0, 2);
  EXPECT_NE(host.MessageText().find("No result in Two_divide_equ !"), std::string::npos);

  const float xs[] = {0, 1, 2, 3}, ys[] = {1, 2, 9, 28};
  float y, dy;
  polint(xs, ys, 4, 1.5f, &y, &dy);
  EXPECT_FLOAT_EQ(y, 1 + 1.5f * 1.5f * 1.5f);
  const float twice[] = {1, 1};
  polint(twice, ys, 2, 1.5f, &y, &dy);
  EXPECT_EQ(host.box(), "Error in polint");
  EXPECT_EQ(QV_ERROR_CODE, 301);
}

TEST(Analysis, Tables) {
  RecordingHost host;
  const float xs[] = {0, 1, 3}, ys[] = {0, 2, 0};
  const float jump_x[] = {0, 1, 1, 2}, jump_y[] = {0, 1, 5, 6};
  liner_inter(jump_x + 1, jump_y + 1, 2, 1);
  EXPECT_EQ(host.box(), qv::captions::kInterpolationPoints);
  EXPECT_EQ(QV_ERROR_CODE, 0);

  float sum_x[12], sum_y[12];
  const float other_x[] = {1, 2}, other_y[] = {10, 10};
  ASSERT_EQ(add_segment_function(3, xs, ys, 2, other_x, other_y, sum_x, sum_y), 4);
  EXPECT_TRUE(sum_x[2] == 2 && sum_y[1] == 12 && sum_y[2] == 11 && sum_y[3] == 0);
  ASSERT_EQ(add_segment_function_2(3, xs, ys, 2, other_x, other_y, sum_x, sum_y), 6);
  const float expected[] = {0, 2, 12, 11, 1, 0};
  for (int i = 0; i < 6; ++i) EXPECT_FLOAT_EQ(sum_y[i], expected[i]) << i;
}

TEST(Analysis, MemoryRunsOut) {
  RecordingHost host;
  float a[] = {2}, b[] = {4}, x = 7, y = 7;
  {
    qvtest::FailingAllocations fail;
    gaussj(a, 1, b, 1);
  }
  ASSERT_EQ(host.boxes.size(), 3u) << "once for each array";
  EXPECT_EQ(host.boxes[2].second, "Out of memery in gaussj");
  EXPECT_EQ(a[0], 2) << "left alone";
  host.boxes.clear();
  {
    qvtest::FailingAllocations fail;
    QV_ERROR_CODE = 0;
    polint(a, b, 1, 0, &x, &y);
    EXPECT_EQ(add_segment_function(1, a, b, 1, a, b, &x, &y), 0);
  }
  ASSERT_EQ(host.boxes.size(), 2u);
  EXPECT_EQ(host.boxes[0].second, "Out of memery in polint");
  EXPECT_EQ(host.boxes[1].second, "Out of memery in add_seg_ment_function");
  EXPECT_TRUE(x == 7 && y == 7 && QV_ERROR_CODE == 301);
}

TEST(Vectors, LocalAxes) {
  Random random(20292);
  for (int i = 0; i < 1000; ++i) {
    const float a = random.real(-3, 3), b = random.real(-1.5, 1.5), c = random.real(-3, 3);
    float lamda[9], t[9], unit[9], angles[3];
    form_euler_lamda(a, b, c, lamda);
    get_euler_angle(lamda, angles, angles + 1, angles + 2);
    ASSERT_TRUE(std::fabs(angles[0] - a) < 1e-3f && std::fabs(angles[1] - b) < 1e-3f &&
                std::fabs(angles[2] - c) < 1e-3f)
        << a << ' ' << b << ' ' << c;
    const float p[] = {random.real(-1, 1), random.real(-1, 1), random.real(-1, 1)}, x[] = {1, 0, 0};
    if (i % 2) form_zhigan_lamda(0, 0, 0, p[0], p[1], p[2], lamda);
    matrix_transfer(lamda, t, 3, 3);
    mut_matrix(lamda, t, unit, 3, 3, 3);
    for (int k = 0; k < 9; ++k) ASSERT_NEAR(unit[k], k % 4 == 0, 1e-6);
    float global[3], along[3];
    xyz_to_XYZ(lamda, x, global);
    vector_cross_vector(global, i % 2 ? p : lamda, along);
    ASSERT_NEAR(vector_len(along), 0, 1e-6) << "the local x axis is the member";
  }
  const float x[] = {2, 0, 0}, d[] = {1, 1, 0}, none[] = {0, 0, 0};
  EXPECT_FLOAT_EQ(vector_cos(x, d), std::sqrt(0.5f));
  EXPECT_FLOAT_EQ(vector_sin(x, d), std::sqrt(0.5f));
  EXPECT_EQ(vector_sin(x, none), 0);
  float lamda[9], product[4];
  form_vecter_lamda(x, d, lamda);
  EXPECT_TRUE(lamda[0] == 1 && lamda[4] == 1 && lamda[8] == 1);
  form_zhigan_lamda(0, 0, 0, 0, 0, 5, lamda);
  EXPECT_TRUE(lamda[2] == 1 && lamda[4] == 1 && lamda[6] == -1);
  const float left[] = {1, 2, 3, 4}, middle[] = {0, 1, 1, 0}, right[] = {1, 0, 0, 1};
  mut_matrix_lr(left, middle, right, product, 2, 2);
  EXPECT_TRUE(product[0] == 2 && product[1] == 1 && product[2] == 4 && product[3] == 3);
}

}  // namespace
