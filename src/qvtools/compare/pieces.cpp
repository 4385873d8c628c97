#include "qvtools/compare/internal/pieces.h"

#include <algorithm>
#include <cstring>
#include <numbers>

#include "qvtools/dxf/model/internal/name_index.h"
#include "qvtools/dxf/view/internal/outline.h"

namespace qv::detail {

namespace {

Point3 plus(const Point3& a, const Point3& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}

bool is_less(const Point3& a, const Point3& b) {
  if (a.x != b.x) return a.x < b.x;
  return a.y != b.y ? a.y < b.y : a.z < b.z;
}

bool is_same(const Point3& a, const Point3& b) {
  return a.x == b.x && a.y == b.y && a.z == b.z;
}

float turned_into_circle(float degrees) {
  const auto turned = static_cast<float>(degrees - 360 * std::floor(double{degrees} / 360));
  return turned >= 359.995F ? 0 : turned;
}

/// Makes pieces of the entities of a list, moved and looking as their insert says.
class Breaker {
 public:
  Breaker(const std::function<void(const SeenPiece&)>& f, int entity, const Point3& shift, const ACAD_INSERT* insert)
      : f_(f), shift_(shift), insert_(insert) {
    piece_.entity = entity;
  }

  void add(ACAD_ENTITY& entity) {
    visit_record(
        entity, [&](auto& record) { take_look(record), add_record(record); },
        [&](ACAD_ENTITY& own) {
          const CFRect r = own.GetFRect();
          piece_.layer = piece_.ltype = {};
          put(PieceKind::Own, {{r.x1, r.y1, 0}, {r.x2, r.y2, 0}});
        });
  }

 private:
  void take_look(const auto& record) {
    constexpr int kByLayerNumber = 256;  // as some programs write it
    piece_.layer = record.m_szLayer;
    piece_.ltype = "BYLAYER";
    piece_.color = kByLayer;
    if constexpr (requires { record.m_szLType; }) piece_.ltype = record.m_szLType;
    if constexpr (requires { record.m_nColor; }) piece_.color = record.m_nColor;
    if (insert_ && piece_.layer == "0") piece_.layer = insert_->m_szLayer;
    if (insert_ && piece_.color == 0) piece_.color = insert_->m_nColor;
    if (piece_.color < 0 || piece_.color == kByLayerNumber) piece_.color = kByLayer;
  }

  void put(PieceKind kind, std::initializer_list<Point3> points, float size0 = 0, float size1 = 0, float size2 = 0) {
    piece_.kind = kind;
    piece_.count = static_cast<int>(points.size());
    std::transform(points.begin(), points.end(), piece_.at, [&](const Point3& p) { return plus(p, shift_); });
    piece_.size[0] = size0;
    piece_.size[1] = size1;
    piece_.size[2] = size2;
    f_(piece_);
    piece_.words = piece_.style = {};
  }

  void put_line(const Point3& a, const Point3& b, float widthA, float widthB) {
    is_less(b, a) ? put(PieceKind::Line, {b, a}, widthB, widthA) : put(PieceKind::Line, {a, b}, widthA, widthB);
  }
  void put_arc(const Point3& a, const Point3& b, const Point3& middle, float widthA, float widthB) {
    is_less(b, a) ? put(PieceKind::Arc, {b, middle, a}, widthB, widthA)
                  : put(PieceKind::Arc, {a, middle, b}, widthA, widthB);
  }

  void add_record(const ACAD_POINT& r) { put(PieceKind::Point, {r.m_Point}); }
  void add_record(const ACAD_LINE& r) { put_line(r.m_Start, r.m_End, 0, 0); }
  void add_record(const ACAD_TEXT& r) {
    piece_.words = r.m_szText;
    piece_.style = r.m_szStyle;
    put(PieceKind::Text, {r.m_Insert}, r.m_fHeight, turned_into_circle(r.m_fRotation), r.m_fWidthFactor);
  }
  void add_record(const ACAD_CIRCLE& r) { put(PieceKind::Circle, {r.m_Center}, r.m_fRadius); }
  void add_record(const ACAD_ARC& r) {
    const auto on_arc = [&](double degrees) {
      const double a = degrees * std::numbers::pi / 180;
      return Point3{static_cast<float>(r.m_Center.x + r.m_fRadius * std::cos(a)),
                    static_cast<float>(r.m_Center.y + r.m_fRadius * std::sin(a)), r.m_Center.z};
    };
    double sweep = double{r.m_fEndAngle} - r.m_fStartAngle;
    if (sweep < 0) sweep += 360;
    if (sweep != 0) put_arc(on_arc(r.m_fStartAngle), on_arc(r.m_fEndAngle), on_arc(r.m_fStartAngle + sweep / 2), 0, 0);
  }
  void add_record(const ACAD_POLYLINE& r) {
    bool own = false;
    for (const ACAD_VERTEX& v : r.m_Vertices) own = own || v.m_fStartWidth != 0 || v.m_fEndWidth != 0;
    const auto add_segment = [&](const ACAD_VERTEX& a, const ACAD_VERTEX& b) {
      if (!is_same(a.m_Point, b.m_Point))
        put_segment(a.m_Point, b.m_Point, a.m_fBulge, own ? a.m_fStartWidth : r.m_fStartWidth,
                    own ? a.m_fEndWidth : r.m_fEndWidth);
    };
    const ACAD_VERTEX* const first = first_vertex(r);
    const ACAD_VERTEX* last = nullptr;
    for (const ACAD_VERTEX& vertex : r.m_Vertices) {
      if (!is_on_curve(r, vertex)) continue;
      if (last) add_segment(*last, vertex);
      last = &vertex;
    }
    if ((r.m_nFlags & 1) != 0 && first && first != last) add_segment(*last, *first);
  }
  void put_segment(const Point3& a, const Point3& b, float bulge, float widthA, float widthB) {
    if (std::fabs(bulge) < 0.0001F) return put_line(a, b, widthA, widthB);
    // The apex lies bulge times half the chord to the right of the way from a to b.
    const double half = double{bulge} / 2;
    const Point3 middle{static_cast<float>((double{a.x} + b.x) / 2 + half * (double{b.y} - a.y)),
                        static_cast<float>((double{a.y} + b.y) / 2 - half * (double{b.x} - a.x)), a.z};
    put_arc(a, b, middle, widthA, widthB);
  }
  /// The corners in their cycle, from the least on towards its lesser neighbour.
  void put_corners(PieceKind kind, const Point3& a, const Point3& b, const Point3& c, const Point3& d) {
    const Point3 cycle[4] = {a, b, c, d};
    int least = 0;
    for (int i = 1; i < 4; ++i)
      if (is_less(cycle[i], cycle[least])) least = i;
    const int step = is_less(cycle[(least + 3) % 4], cycle[(least + 1) % 4]) ? 3 : 1;
    const auto corner = [&](int i) { return cycle[(least + i * step) % 4]; };
    put(kind, {corner(0), corner(1), corner(2), corner(3)});
  }
  void add_record(const ACAD_SOLID& r) {
    put_corners(PieceKind::Solid, r.m_Corner[0], r.m_Corner[1], r.m_Corner[3], r.m_Corner[2]);
  }
  void add_record(const ACAD_3DFACE& r) {
    put_corners(PieceKind::Face, r.m_Corner[0], r.m_Corner[1], r.m_Corner[2], r.m_Corner[3]);
  }
  void add_record(const ACAD_INSERT&) {}

  const std::function<void(const SeenPiece&)>& f_;
  Point3 shift_;
  const ACAD_INSERT* insert_;
  SeenPiece piece_{};
};

}  // namespace

void for_each_piece(DXF& dxf, const std::function<void(const SeenPiece&)>& f) {
  InsertedBlocks blocks(dxf);
  int number = 0;
  walk(dxf.m_EntityList, [&](ACAD_ENTITY& entity) {
    const int index = number++;
    if (entity.GetType() != ACAD_TYPE_INSERT) return Breaker(f, index, {}, nullptr).add(entity);
    const auto& insert = static_cast<ACAD_INSERT&>(entity);
    const ACAD_BLOCK* const block = blocks(insert);
    if (!block) return;
    Breaker breaker(f, index, displacement(*block, insert), &insert);
    walk_block(*block, [&](ACAD_ENTITY& part) { return breaker.add(part), false; });
  });
}

std::uint32_t PieceNames::look_of(const SeenPiece& piece) {
  if (last_.look != 0 && last_.color == piece.color && last_.layer == piece.layer && last_.ltype == piece.ltype)
    return last_.look;
  const Key key{name(piece.layer), name(piece.ltype), piece.color};
  const std::uint32_t look = looks_.try_emplace(key, static_cast<std::uint32_t>(looks_.size() + 1)).first->second;
  last_ = {piece.layer, piece.ltype, piece.color, look};
  return look;
}

std::uint32_t PieceNames::words_of(const SeenPiece& piece) {
  if (piece.kind != PieceKind::Text) return 0;
  const Key key{name(piece.words), name(piece.style), 0};
  return words_.try_emplace(key, static_cast<std::uint32_t>(words_.size() + 1)).first->second;
}

Pieces::Pieces(DXF& dxf, PieceNames& names) {
  const auto count = static_cast<std::size_t>(dxf.m_EntityList.GetCount());
  all.reserve(count);
  points.reserve(2 * count);
  for_each_piece(dxf, [&](const SeenPiece& seen) {
    Piece piece{};
    piece.look = names.look_of(seen);
    piece.words = names.words_of(seen);
    piece.first = static_cast<std::uint32_t>(points.size());
    piece.entity = seen.entity;
    piece.kind = seen.kind;
    piece.count = static_cast<std::uint8_t>(seen.count);
    std::copy(seen.size, seen.size + 3, piece.size);
    // A byte takes about its height times the width factor.
    piece.length = static_cast<float>(seen.words.size()) * seen.size[0] * seen.size[2];
    points.insert(points.end(), seen.at, seen.at + seen.count);
    all.push_back(piece);
  });
}

CFRect Pieces::box_of(const Piece& piece) const {
  const Point3* const p = points_of(piece);
  CFRect box(p[0].x, p[0].y, p[0].x, p[0].y);
  for (int i = 1; i < piece.count; ++i)
    box =
        CFRect(std::min(box.x1, p[i].x), std::min(box.y1, p[i].y), std::max(box.x2, p[i].x), std::max(box.y2, p[i].y));
  if (piece.kind == PieceKind::Text) {
    const double angle = piece.size[1] * std::numbers::pi / 180;
    const auto c = static_cast<float>(std::cos(angle)), sn = static_cast<float>(std::sin(angle));
    const float along[] = {piece.length * c, piece.length * sn};
    const float up[] = {-piece.size[0] * sn, piece.size[0] * c};
    box.Inflect(
        -std::min({along[0], up[0], along[0] + up[0], 0.0F}), -std::min({along[1], up[1], along[1] + up[1], 0.0F}),
        std::max({along[0], up[0], along[0] + up[0], 0.0F}), std::max({along[1], up[1], along[1] + up[1], 0.0F}));
  }
  if (piece.kind == PieceKind::Circle) box.Inflect(piece.size[0], piece.size[0], piece.size[0], piece.size[0]);
  return box;
}

double Pieces::reach() const {
  float far = 0;
  for (const Point3& p : points)
    for (const float v : {std::fabs(p.x), std::fabs(p.y)})
      if (v < 1e30F) far = std::max(far, v);
  return far;
}

}  // namespace qv::detail
