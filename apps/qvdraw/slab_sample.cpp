#include "slab_sample.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "picture.h"

namespace qvdraw {

namespace {

constexpr int kRound = 320;  // nodes around the opening
constexpr int kAcross = 96;  // cells from the opening to the slab's border
constexpr double kLength = 12, kWidth = 8;
constexpr double kHoleX = 7.5, kHoleY = 4.5, kHoleRadius = 1.3;

/// How far the slab's border is from the opening's centre in a direction.
double border_distance(double c, double s) {
  const double across = c > 0 ? (kLength - kHoleX) / c : c < 0 ? kHoleX / -c : 1e9;
  const double along = s > 0 ? (kWidth - kHoleY) / s : s < 0 ? kHoleY / -s : 1e9;
  return std::min(across, along);
}

/// A ring mesh that leaves the slab's corners: the directions of the nodes pass through them.
double direction(int i) {
  const double corners[] = {std::atan2(-kHoleY, kLength - kHoleX), std::atan2(kWidth - kHoleY, kLength - kHoleX),
                            std::atan2(kWidth - kHoleY, -kHoleX), std::atan2(-kHoleY, -kHoleX) + 2 * std::numbers::pi,
                            std::atan2(-kHoleY, kLength - kHoleX) + 2 * std::numbers::pi};
  constexpr int kSide = kRound / 4;
  const int side = i / kSide;
  const double fraction = i % kSide / static_cast<double>(kSide);
  return corners[side] + (corners[side + 1] - corners[side]) * fraction;
}

CChangNode node_at(double x, double y) {
  const double p = std::numbers::pi * x / kLength, q = std::numbers::pi * y / kWidth;
  const double r = std::hypot(x - kHoleX, y - kHoleY) / kHoleRadius;
  const double rise = 1 + 0.35 / (r * r);
  CChangNode node;
  node.x = static_cast<float>(x);
  node.y = static_cast<float>(y);
  const double values[] = {std::max(12.4 * std::sin(p) * std::sin(q) * rise, 0.0), 3.2 * std::cos(p) * std::sin(q),
                           4.9 * std::sin(p) * std::cos(q), 18.0 * std::sin(p) * std::sin(q),
                           9.0 * std::cos(p) * std::cos(q)};
  for (int k = 0; k < CChangNode::kValues; ++k) node.value[k] = static_cast<float>(values[k]);
  return node;
}

}  // namespace

void make_sample_slab(CChang& field) {
  for (int ring = 0; ring <= kAcross; ++ring) {
    for (int i = 0; i < kRound; ++i) {
      const double c = std::cos(direction(i)), s = std::sin(direction(i));
      const double distance = kHoleRadius + (border_distance(c, s) - kHoleRadius) * ring / kAcross;
      field.m_Nodes.Add(node_at(kHoleX + c * distance, kHoleY + s * distance));
    }
  }
  for (int ring = 0; ring < kAcross; ++ring) {
    for (int i = 0; i < kRound; ++i) {
      const int inner = ring * kRound + i + 1;
      const int next = ring * kRound + (i + 1) % kRound + 1;
      field.m_Tris.Add(CChangTri{{inner, inner + kRound, next + kRound}});
      field.m_Tris.Add(CChangTri{{inner, next + kRound, next}});
    }
  }
}

void write_sample_slab(const std::string& directory) {
  CChang slab;
  make_sample_slab(slab);
  const std::string path = directory + "/slab.field";
  qv::SavedFile saved(path.c_str(), qv::SavedFile::Lines::CrLf);
  const bool written = saved.is_open() && slab.SaveData(saved.stream()) && saved.commit();
  std::FILE* const file = written ? qv::open_text(path.c_str(), "rt") : nullptr;
  if (!file) throw std::runtime_error(path + ": cannot be written");
  // The picture shows what the file holds: six decimals.
  CChang field;
  field.LoadData(file);
  std::fclose(file);
  save_contour(field, directory + "/slab.png", CSize(1200, 800));
}

}  // namespace qvdraw
