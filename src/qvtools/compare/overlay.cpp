#include <algorithm>
#include <cmath>
#include <string>

#include "qvtools/compare/compare.h"
#include "qvtools/compare/internal/pieces.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/gbk_text.h"

namespace qv {

namespace {

using detail::PieceKind;
using detail::SeenPiece;
using Fate = Comparison::Fate;

constexpr const char* kDashes = "DASHED";

/// Writes pieces on a layer of the drawing.
class Overlay {
 public:
  Overlay(DXF& before, DXF& after, const Comparison& comparison)
      : before_(before), after_(after), comparison_(comparison), drawing_(std::make_unique<DXF>()) {}

  std::unique_ptr<DXF> draw() {
    make_tables();
    add_pieces(after_, comparison_.after, Fate::Same, kSameLayer);
    add_pieces(before_, comparison_.before, Fate::Alone, kOldLayer, comparison_.shift);
    add_pieces(after_, comparison_.after, Fate::Alone, kNewLayer);
    add_pieces(after_, comparison_.after, Fate::Moved, kMovedLayer);
    add_pieces(after_, comparison_.after, Fate::Changed, kChangedLayer);
    add_places();
    return std::move(drawing_);
  }

 private:
  void make_tables() {
    constexpr int kGrey = 8, kRed = 1, kGreen = 3, kCyan = 4, kMagenta = 6, kOrange = 30;
    drawing_->Set_MaxNum_of_Tables(kDefaultMaxLType, kDefaultMaxLayer, before_.m_nStyle + after_.m_nStyle + 1);
    if (!drawing_->New_MemDxf()) throw std::bad_alloc();
    const CFRect sheet = after_.GetFRect();
    const float size = std::max(sheet.Width(), sheet.Height());
    const float dash = std::isfinite(size) && size > 0 ? size / 250 : 1;
    const float dashes[] = {dash, -dash / 2};
    drawing_->Add_LType(kDashes, "__ __ __", 2, dash * 1.5F, dashes);
    drawing_->Add_Layer(kSameLayer, kGrey, "CONTINUOUS");
    drawing_->Add_Layer(kOldLayer, kRed, kDashes);
    drawing_->Add_Layer(kNewLayer, kGreen, "CONTINUOUS");
    drawing_->Add_Layer(kMovedLayer, kCyan, "CONTINUOUS");
    drawing_->Add_Layer(kChangedLayer, kMagenta, "CONTINUOUS");
    drawing_->Add_Layer(kPlacesLayer, kOrange, "CONTINUOUS");
    for (DXF* const from : {&after_, &before_})
      for (int i = 1; from->m_pStyle && i < from->m_nStyle; ++i) {
        const ACAD_STYLE& style = from->m_pStyle[static_cast<std::size_t>(i)];
        if (!has_style(style.m_szName)) drawing_->Add_STyle(style.m_szName, style.m_szFont, style.m_szBigFont);
      }
  }
  bool has_style(std::string_view name) const {
    for (int i = 0; i < drawing_->m_nStyle; ++i)
      if (name == drawing_->m_pStyle[static_cast<std::size_t>(i)].m_szName) return true;
    return false;
  }

  void add_pieces(DXF& from, const std::vector<Fate>& fates, Fate wanted, const char* layer, CFPoint shift = {0, 0}) {
    std::size_t number = 0;
    detail::for_each_piece(from, [&](const SeenPiece& piece) {
      const std::size_t i = number++;
      if (i < fates.size() && fates[i] == wanted) add_piece(piece, layer, shift);
    });
  }

  template <class Record>
  Record& add(const char* layer) {
    auto record = std::make_unique<Record>();
    copy_text(record->m_szLayer, layer);
    Record& added = *record;
    if (!drawing_->m_EntityList.AddTail(record.get())) throw std::bad_alloc();
    record.release();
    return added;
  }

  void add_piece(const SeenPiece& piece, const char* layer, CFPoint shift) {
    const auto at = [&](int i) {
      const Point3& p = piece.at[i];
      return Point3{p.x + shift.x, p.y + shift.y, p.z};
    };
    switch (piece.kind) {
      case PieceKind::Point:
        add<ACAD_POINT>(layer).m_Point = at(0);
        break;
      case PieceKind::Line:
      case PieceKind::Arc:
        add_line_or_arc(piece, layer, at);
        break;
      case PieceKind::Circle: {
        auto& circle = add<ACAD_CIRCLE>(layer);
        circle.m_Center = at(0);
        circle.m_fRadius = piece.size[0];
        break;
      }
      case PieceKind::Text:
        add_text(piece, layer, at(0));
        break;
      case PieceKind::Solid: {
        auto& solid = add<ACAD_SOLID>(layer);
        for (const int i : {0, 1, 2, 3}) solid.m_Corner[i < 2 ? i : 5 - i] = at(i);
        break;
      }
      case PieceKind::Face: {
        auto& face = add<ACAD_3DFACE>(layer);
        for (const int i : {0, 1, 2, 3}) face.m_Corner[i] = at(i);
        break;
      }
      case PieceKind::Own: {
        const Point3 a = at(0), b = at(1);
        add_frame(CFRect(a.x, a.y, b.x, b.y), layer);
        break;
      }
    }
  }

  void add_line_or_arc(const SeenPiece& piece, const char* layer, const auto& at) {
    const bool isWide = piece.size[0] != 0 || piece.size[1] != 0;
    if (piece.kind == PieceKind::Line && !isWide) {
      auto& line = add<ACAD_LINE>(layer);
      line.m_Start = at(0);
      line.m_End = at(1);
      return;
    }
    const Point3 from = at(0);
    const Point3 to = at(piece.count - 1);
    float bulge = 0;
    if (piece.kind == PieceKind::Arc) {
      // The way from the middle of the chord to that of the arc, over half the chord; to the right it is positive.
      const Point3 middle = at(1);
      const double dx = double{to.x} - from.x;
      const double dy = double{to.y} - from.y;
      const double mx = middle.x - (double{from.x} + to.x) / 2;
      const double my = middle.y - (double{from.y} + to.y) / 2;
      const double chord = dx * dx + dy * dy;
      if (chord > 0) bulge = static_cast<float>(2 * (mx * dy - my * dx) / chord);
    }
    auto& polyline = add<ACAD_POLYLINE>(layer);
    polyline.m_fStartWidth = piece.size[0];
    polyline.m_fEndWidth = piece.size[1];
    for (const Point3& p : {from, to}) {
      ACAD_VERTEX vertex;
      copy_text(vertex.m_szLayer, layer);
      vertex.m_Point = p;
      vertex.m_fBulge = bulge;
      vertex.m_fStartWidth = piece.size[0];
      vertex.m_fEndWidth = piece.size[1];
      polyline.m_Vertices.Add(vertex);
      bulge = 0;
    }
    polyline.m_First = from;
    polyline.m_Second = to;
  }

  ACAD_TEXT& add_text(const char* layer, const Point3& at, float height, std::string_view words) {
    auto& text = add<ACAD_TEXT>(layer);
    text.m_Insert = text.m_Align = at;
    text.m_fHeight = height;
    copy_text(text.m_szText, std::string(words).c_str());
    return text;
  }
  void add_text(const SeenPiece& piece, const char* layer, const Point3& at) {
    ACAD_TEXT& text = add_text(layer, at, piece.size[0], piece.words);
    text.m_fRotation = piece.size[1];
    text.m_fWidthFactor = piece.size[2];
    text.m_bWidthGiven = 1;
    copy_text(text.m_szStyle, std::string(piece.style).c_str());
  }

  void add_frame(const CFRect& r, const char* layer) {
    auto& frame = add<ACAD_POLYLINE>(layer);
    frame.m_nFlags = 1;
    const Point3 corners[] = {{r.x1, r.y1, 0}, {r.x2, r.y1, 0}, {r.x2, r.y2, 0}, {r.x1, r.y2, 0}};
    for (const Point3& corner : corners) {
      ACAD_VERTEX vertex;
      copy_text(vertex.m_szLayer, layer);
      vertex.m_Point = corner;
      frame.m_Vertices.Add(vertex);
    }
    frame.m_First = corners[0];
    frame.m_Second = corners[1];
  }

  void add_places() {
    const CFRect sheet = drawing_->GetFRect();
    const float size = std::hypot(sheet.Width(), sheet.Height());
    if (!std::isfinite(size)) return;
    const float margin = size / 200;
    int number = 0;
    for (const DifferentPlace& place : comparison_.places) {
      CFRect frame = place.box;
      frame.Inflect(margin, margin, margin, margin);
      add_frame(frame, kPlacesLayer);
      add_text(kPlacesLayer, {frame.x1, frame.y2 + margin / 2, 0}, size / 100, std::to_string(++number));
    }
  }

  DXF& before_;
  DXF& after_;
  const Comparison& comparison_;
  std::unique_ptr<DXF> drawing_;
};

}  // namespace

std::unique_ptr<DXF> DrawComparison(DXF& before, DXF& after, const Comparison& comparison) {
  return detail::unless_out_of_memory([&] { return Overlay(before, after, comparison).draw(); }, nullptr);
}

}  // namespace qv
