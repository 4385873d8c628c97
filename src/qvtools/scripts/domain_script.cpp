#include "qvtools/geometry/domains/domain.h"
#include "qvtools/scripts/script.h"

void CPointInDomain::Draw_SCR(std::FILE* f, const CDomainEdge& edge, const CDomainEdge& next) const {
  if (!edge.isArc) {
    acad_line(f, edge.x, edge.y, next.x, next.y);
  } else if (edge.ccw) {
    acad_arc(f, edge.cx, edge.cy, edge.x, edge.y, next.x, next.y);
  } else {
    acad_arc(f, edge.cx, edge.cy, next.x, next.y, edge.x, edge.y);
  }
}

void CPointInDomain::Draw_SCR(std::FILE* f, int n, const CDomainEdge* edges) const {
  for (int i = 0; i < n; ++i) Draw_SCR(f, edges[i], edges[i + 1 < n ? i + 1 : 0]);
}
