#pragma once

/// The geometry of a field that its values, its locator and its picture share.

#include <algorithm>

#include "qvtools/engineering/field.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/services/text_input.h"

namespace qv::detail {

/// Nodes nearer than this are the point itself.
inline constexpr float kSamePlace = 0.0001F;
/// No node at this distance or beyond is a point's nearest.
inline constexpr float kFarAway = 1e10F;

inline int value_index(const CChang& field) {
  return std::clamp(field.m_nValueIndex, 0, CChangNode::kValues - 1);
}

/// The corners of a triangle; all null when one of its numbers is no node's.
struct Corners {
  const CChangNode* a = nullptr;
  const CChangNode* b = nullptr;
  const CChangNode* c = nullptr;
  explicit operator bool() const { return a != nullptr; }
};

inline bool is_whole(const CChang& field, const CChangTri& tri) {
  const int n = field.m_Nodes.GetSize();
  return std::all_of(tri.node, tri.node + 3, [n](int node) { return node >= 1 && node <= n; });
}

inline Corners corners(const CChang& field, const CChangTri& tri) {
  if (!is_whole(field, tri)) return {};
  const CChangNode* const nodes = field.m_Nodes.GetData() - 1;
  return {nodes + tri.node[0], nodes + tri.node[1], nodes + tri.node[2]};
}

inline bool contains(const Corners& t, float x, float y) {
  return det_tri(t.a->x, t.a->y, t.b->x, t.b->y, x, y) > 0 && det_tri(t.b->x, t.b->y, t.c->x, t.c->y, x, y) > 0 &&
         det_tri(t.c->x, t.c->y, t.a->x, t.a->y, x, y) > 0;
}

inline float interpolate(const Corners& t, int k, float x, float y) {
  const float xs[] = {t.a->x, t.b->x, t.c->x};
  const float ys[] = {t.a->y, t.b->y, t.c->y};
  const float values[] = {t.a->value[k], t.b->value[k], t.c->value[k]};
  return PinMianChaZhi(xs, ys, values, x, y);
}

}  // namespace qv::detail
