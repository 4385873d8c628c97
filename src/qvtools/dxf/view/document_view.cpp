#include <algorithm>

#include "qvtools/display/internal/world_window.h"
#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

void ACAD_BLOCK::Draw(CDC* dc, CFCoor* coor, ACAD_INSERT* insert) {
  unless_out_of_memory([&] {
    DrawingContext to = drawing_context(dc, *coor);
    draw_block(*this, *insert, Plane(), to);
  });
}

void ACAD_BLOCK::Draw3D(CDC* dc, CFCoor* coor, float a, float b, ACAD_INSERT* insert) {
  unless_out_of_memory([&] {
    DrawingContext to = drawing_context(dc, *coor);
    draw_block(*this, *insert, Plane(a, b), to);
  });
}

namespace {

/// Draws all entities of a document, inserts by their blocks.
void draw_document(DXF& dxf, const Plane& plane, DrawingContext& to) {
  to.dc()->SetBkMode(qv::BackgroundMode::Transparent);
  const WorldWindow window(to.safe(), to.coor());
  InsertedBlocks blocks(dxf);
  walk(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
    const ACAD_Entity_Type type = entity.GetType();
    if (type == ACAD_TYPE_LINE && is_exactly<ACAD_LINE>(entity)) {
      // Most of a drawing are lines, and most lines of a large one lie outside a window.
      const auto& line = static_cast<const ACAD_LINE&>(entity);
      const CFPoint start = plane(line.m_Start);
      const CFPoint end = plane(line.m_End);
      if (!window.misses(start.x, start.y, end.x, end.y))
        to.draw_line(start, end, pen_style(line.m_szLType), line.m_nColor);
    } else if (type == ACAD_TYPE_INSERT) {
      const auto& insert = static_cast<const ACAD_INSERT&>(entity);
      if (const ACAD_BLOCK* const block = blocks(insert)) draw_block(*block, insert, plane, to);
    } else {
      draw_entity(entity, plane, to);
    }
  });
}

}  // namespace

void DXF::Draw(CDC* dc, CFCoor* coor, const qv::Appearance& appearance) {
  m_pCoor = coor;
  if (!m_nMemFlag) return;
  unless_out_of_memory([&] {
    DrawingContext to = drawing_context(dc, *coor, appearance);
    draw_document(*this, Plane(), to);
  });
}

void DXF::Draw3D(CDC* dc, CFCoor* coor, float a, float b, const qv::Appearance& appearance) {
  m_pCoor = coor;
  if (!m_nMemFlag) return;
  unless_out_of_memory([&] {
    DrawingContext to = drawing_context(dc, *coor, appearance);
    draw_document(*this, Plane(a, b), to);
  });
}

namespace qv {

LinePatterns PatternsOf(const DXF& document) {
  LinePatterns patterns;
  for (int i = 0; document.m_pLType && i < document.m_nLType; ++i) {
    const ACAD_LTYPE& ltype = document.m_pLType[static_cast<std::size_t>(i)];
    const int count = std::clamp(ltype.m_nElements, 0, kMaxPatternElements);
    patterns.add(ltype.m_szName, {ltype.m_fElement, static_cast<std::size_t>(count)});
  }
  return patterns;
}

}  // namespace qv
