// Floats of every kind into the whole geometry: nothing may crash, loop, read past an array or leave an integer's
// range. Where two functions promise the same answer, it is compared.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "qvtools/geometry/domains/prepared_domain.h"
#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/numerics/analysis.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/geometry/numerics/polygons.h"
#include "qvtools/geometry/numerics/vectors.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/platform/console/console_host.h"
#include "qvtools/services/services.h"

namespace {

class SilentHost : public qv::ConsoleHost {
 public:
  qv::Answer ShowBox(const char*, qv::BoxKind) override { return qv::Answer::Ok; }
};

/// Floats from bytes: small lattice values, special values, and any bits at all. The end of the input gives zeros.
class Source {
 public:
  Source(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}
  bool empty() const { return data_ == end_; }
  std::uint8_t byte() { return empty() ? std::uint8_t{0} : *data_++; }
  float real() {
    constexpr float kSpecial[] = {0,
                                  -0.0f,
                                  1e-30f,
                                  1e30f,
                                  3.14159274f,
                                  -3.14159274f,
                                  6.2831855f,
                                  1e-5f,
                                  std::numeric_limits<float>::max(),
                                  std::numeric_limits<float>::denorm_min(),
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity(),
                                  std::numeric_limits<float>::quiet_NaN()};
    const std::uint8_t kind = byte();
    if (kind < 128) return static_cast<float>(kind - 64) / 4;
    if (kind < 200) return kSpecial[(kind - 128) % std::size(kSpecial)];
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) bits = bits << 8 | byte();
    float value;
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  CFPoint point() {
    const float x = real();
    return {x, real()};
  }

 private:
  const std::uint8_t* data_;
  const std::uint8_t* end_;
};

void values(Source& in) {
  const CFPoint p = in.point(), q = in.point(), c = in.point();
  const float tol = in.real();
  CFShape a(p, q, in.real()), b(p, q, c), d(c, in.real(), in.real(), in.real());
  for (const CFShape& s : {a, b, d}) {
    CFPoint out[2];
    s.GetRect(out[0], out[1]);
    (void)(s.Distance(p) + s.GetLength() + s.DistanceToFigure(q));
    (void)(s.AtLeft(c) + s.OnShape(c, tol) + s.OverLine(c, tol, tol) + s.HitTest(c, tol) + s.Contain(p, c) +
           s.Similar(a, tol));
    for (const CFShape& t : {a, b, d}) {
      if (const int n = s.Intersect(t, out, 0, 1); n < -1 || n > 2) std::abort();
    }
    CFShape moved = s;
    moved.Rotate(c, 1).Mirror(p, q).Stretch(c, tol).VertMove(tol);
  }
  CFRect r(p, q);
  (void)static_cast<CRect>(r.Rotate(c, tol) & CFRect(tol, a));
  const CFCoor coor(c, in.real(), in.byte() & 1);
  (void)coor.DPtoFP(coor.FPtoDP(r));
  (void)coor.FPtoDP(static_cast<double>(tol));
}

CFRegion outline(Source& in) {
  CFRegion region;
  for (int i = in.byte() % 12; i > 0; --i) {
    const CFPoint p = in.point();
    region.Add(CFShoot(p, in.byte() & 1 ? in.real() : 0));
  }
  return region;
}

void outlines(Source& in) {
  const CFRegion region = outline(in), other = outline(in);
  const CFPoint p = in.point(), q = in.point();
  const float tol = in.real();
  CFPoint low, high;
  region.GetRect(low, high);
  (void)(region.InRegion(p) + region.IsOrder() + region.HitTest(p, tol) + region.Contain(p, q) +
         region.HitShape(CFShape(p, q, tol), 0) + region.HitShape(CFShape(p, q), 1) + region.Intersect(other, 1));
  std::vector<CFPoint> out(static_cast<std::size_t>(2 * region.GetSize() * other.GetSize() + 24));
  (void)(region.Intersect(CFShape(p, q), out.data()) + region.Intersect(other, out.data(), in.byte() & 1));

  CArray<CDomainEdge, CDomainEdge&> edges;
  const int n = Region_To_Domain(region, edges);
  for (CDomainEdge& e : edges) {
    if (in.byte() & 1) e.cx = in.real();
  }
  CPointInDomain domain;
  const int answer = domain.Point_In_Domain(n, edges.GetData(), p.x, p.y, tol);
  (void)CPreparedDomain(n, edges.GetData()).Point_In_Domain(p.x, p.y, tol);
  (void)answer;
  (void)domain.Find_Cross_Points_H(n, edges.GetData(), p.x, p.y, tol);
  (void)domain.Get_Area(n, edges.GetData());
  float x, y;
  domain.Get_Centroid(n, edges.GetData(), x, y);
  const float xs[] = {p.x, q.x, q.x, p.x}, ys[] = {p.y, p.y, q.y, q.y};
  (void)domain.Test_CrossRegon_Domain_Rect(n, edges.GetData(), xs, ys, tol);
  (void)domain.Test_CrossRegon_Domain_Circle(n, edges.GetData(), p.x, p.y, q.x, tol);
  if (n > 0) (void)domain.Break_The_Edge(edges, in.byte() % n);
}

void functions(Source& in) {
  std::array<float, 12> f;
  for (float& v : f) v = in.real();
  const auto [x1, y1, r1, w1, a1, b1, x2, y2, r2, w2, a2, b2] = f;
  const float tol = in.real();
  float u[4];
  (void)(JH_Set2PI(a1) + JH_GetAngle(x1, y1, x2, y2) + JH_GetLenArc(x1, y1, r1, w1, a1, b1));
  const int counts[] = {
      JH_GetInterPoint_Circle_Circle(x1, y1, r1, x2, y2, r2, u, u + 1, u + 2, u + 3, tol),
      JH_GetInterPoint_Arc_Arc(x1, y1, r1, a1, b1, x2, y2, r2, a2, b2, u, u + 1, u + 2, u + 3, tol),
      JH_GetInterPoint_LineSection_Arc(x1, y1, w1, w2, x2, y2, r2, a2, b2, u, u + 1, u + 2, u + 3, tol),
      JH_GetInterPoint_LineSection_LineSection(x1, y1, r1, w1, x2, y2, r2, w2, u, u + 1, tol),
      JH_GetInterPoint_LineSection_Old(x1, y1, r1, w1, x2, y2, r2, w2, u, u + 1, tol),
      JH_GetInterPoint_Line(x1, y1, r1, w1, x2, y2, r2, w2, u, u + 1, tol)};
  for (const int n : counts) {
    if (n < -1 || n > 2) std::abort();
  }
  const float xs[] = {x1, x2, w2, b1}, ys[] = {y1, y2, a2, b2};
  (void)(JH_TestPointIn_JvBuYuanHuan(x2, y2, x1, y1, r1, w1, a1, b1, tol) +
         JH_TestPointIn_TuPolygon(r1, r2, 4, xs, ys, tol) +
         JH_TestCross_LineSection_Arc(x1, y1, w1, w2, x2, y2, r2, a2, b2, tol) +
         JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(x1, y1, r1, w1, a1, b1, x2, y2, r2, w2, a2, b2, tol) +
         JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(4, xs, ys, x1, y1, r1, w1, a1, b1, tol) +
         JH_TestCrossRegon_Arc_JvBuYuanHuan(x1, y1, r1, a1, b1, x2, y2, r2, w2, a2, b2, tol) +
         JH_TestCrossRegon_Circle_JvBuYuanHuan(x1, y1, r1, x2, y2, r2, w2, a2, b2, tol) +
         JH_TestCrossRegon_LineSection_JvBuYuanHuan(x1, y1, a1, b1, x2, y2, r2, w2, a2, b2, tol) +
         JH_TestCrossRegon_TuPolygon_TuPolygon(4, xs, ys, 3, ys, xs, tol) +
         JH_TestCrossRegon_Arc_TuPolygon(x1, y1, r1, a1, b1, 4, xs, ys, tol) +
         JH_TestCrossRegon_Circle_TuPolygon(x1, y1, r1, 4, xs, ys, tol));
  (void)(in_domain(4, xs, ys, r1, r2) + segment_cross_point(x1, y1, r1, w1, x2, y2, r2, w2, u, u + 1) +
         get_rect_jiaodian(x1, y1, x2, y2, r1, w1, r2, w2, u, u + 1, u + 2, u + 3));
  (void)(get_line_angle(x1, y1, x2, y2) + max_angle_of_tri(x1, y1, x2, y2, r1, r2));
}

void numerics(Source& in) {
  constexpr int kMost = 8;
  QV_ERROR_CODE = 0;
  const int n = in.byte() % kMost, m = in.byte() % 3;
  float a[kMost * kMost], b[kMost * 3], xs[4 * kMost], ys[4 * kMost];
  for (float& v : a) v = in.real();
  for (float& v : b) v = in.real();
  gaussj(a, n, b, m);
  for (int i = 0; i < kMost; ++i) {
    xs[i] = a[i];
    ys[i] = b[i];
  }
  const float x = in.real();
  (void)(liner_inter(xs, ys, n, x) + liner_inter_2_left(n, xs, ys, x) + liner_inter_2_right(n, xs, ys, x));
  float y, dy;
  polint(xs, ys, n, x, &y, &dy);
  (void)add_segment_function_2(n, xs, ys, m, a, b, xs, ys);
  static float slope;
  slope = x;
  (void)two_divide_equ([](float v) { return slope * v - 1; }, a[0], a[1]);
  float lamda[9], angles[3];
  form_zhigan_lamda(a[0], a[1], a[2], a[3], a[4], a[5], lamda);
  form_vecter_lamda(a, a + 3, lamda);
  get_euler_angle(lamda, angles, angles + 1, angles + 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static SilentHost host;
  qv::SetHost(&host);
  static const int quiet = (tell_error(-8888, "FALSE"), 0);
  (void)quiet;
  Source in(data, size);
  void (*const kinds[])(Source&) = {values, outlines, functions, numerics};
  while (!in.empty()) kinds[in.byte() % 4](in);
  return 0;
}
