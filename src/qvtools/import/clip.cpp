// What a window cuts: everything becomes straight pieces there.

#include <array>

#include "qvtools/import/internal/curves.h"
#include "qvtools/import/internal/output.h"

namespace qv::importing {

namespace {

/// The part of a line within the window, as shares of its length; false when there is none.
bool visible_part(const Window& w, const Vec& a, const Vec& b, double& from, double& to) {
  from = 0;
  to = 1;
  const auto cut = [&](double start, double step, double low, double high) {
    if (step == 0) return start >= low && start <= high;
    double near = (low - start) / step;
    double far = (high - start) / step;
    if (near > far) std::swap(near, far);
    from = std::max(from, near);
    to = std::min(to, far);
    return from <= to;
  };
  return cut(a.x, b.x - a.x, w.x1, w.x2) && cut(a.y, b.y - a.y, w.y1, w.y2);
}

/// Keeps the output's window away while what was cut is put out.
class Unwindowed {
 public:
  explicit Unwindowed(Output& out) : out_(out), window_(out.window) { out.window = nullptr; }
  ~Unwindowed() { out_.window = window_; }
  Unwindowed(const Unwindowed&) = delete;
  Unwindowed& operator=(const Unwindowed&) = delete;

 private:
  Output& out_;
  const Window* window_;
};

}  // namespace

bool Output::cut_line(const Vec& a, const Vec& b) {
  double from;
  double to;
  if (!is_finite(a) || !is_finite(b)) return false;
  if (!visible_part(*window, a, b, from, to)) return true;
  const Unwindowed whole(*this);
  return line(a + (b - a) * from, a + (b - a) * to);
}

bool Output::cut_polyline(std::span<const Vertex> vertices, int flags) {
  std::vector<Vertex> piece;
  bool good = true;
  const Window w = *window;
  const Unwindowed whole(*this);
  const auto flush = [&] {
    if (piece.size() > 1) good = polyline(piece, flags & ~1) && good;
    piece.clear();
  };
  const auto add = [&](const Vec& a, const Vec& b, const Vertex& widths) {
    double from;
    double to;
    if (!visible_part(w, a, b, from, to)) return flush();
    if (from > 0) flush();
    if (piece.empty()) piece.push_back({a + (b - a) * from, widths.startWidth, widths.endWidth});
    piece.push_back({a + (b - a) * to, widths.startWidth, widths.endWidth});
    if (to < 1) flush();
  };
  const std::size_t edges = vertices.size() - ((flags & 1) != 0 ? 0 : 1);
  for (std::size_t i = 0; i < edges; ++i) {
    const Vertex& from = vertices[i];
    std::vector<Vec> points;
    flatten_bulge(from.at, vertices[(i + 1) % vertices.size()].at, from.bulge, tolerance, points);
    Vec before = from.at;
    for (const Vec& p : points) {
      if (!is_finite(p)) return false;
      add(before, p, from);
      before = p;
    }
  }
  flush();
  return good;
}

bool Output::cut_solid(const Vec (&corners)[4]) {
  // Round the window's four sides in turn; what is left of a convex outline is convex.
  std::vector<Vec> outline{corners[0], corners[1], corners[3], corners[2]};
  const Window w = *window;
  const auto keep = [&](auto&& inside) {
    std::vector<Vec> kept;
    for (std::size_t i = 0; i < outline.size(); ++i) {
      const Vec& a = outline[i];
      const Vec& b = outline[(i + 1) % outline.size()];
      const double da = inside(a);
      const double db = inside(b);
      if (da >= 0) kept.push_back(a);
      if ((da > 0 && db < 0) || (da < 0 && db > 0)) kept.push_back(a + (b - a) * (da / (da - db)));
    }
    outline = std::move(kept);
  };
  keep([&](const Vec& p) { return p.x - w.x1; });
  keep([&](const Vec& p) { return w.x2 - p.x; });
  keep([&](const Vec& p) { return p.y - w.y1; });
  keep([&](const Vec& p) { return w.y2 - p.y; });
  const Unwindowed whole(*this);
  bool good = true;
  for (std::size_t i = 2; i < outline.size(); ++i) {
    const Vec triangle[4] = {outline[0], outline[i - 1], outline[i], outline[i]};
    good = solid(triangle) && good;
  }
  return good;
}

}  // namespace qv::importing
