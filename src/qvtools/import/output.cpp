#include "qvtools/import/internal/output.h"

#include <climits>
#include <cstring>

#include "qvtools/display/appearance.h"
#include "qvtools/import/internal/curves.h"
#include "qvtools/import/internal/lettering.h"
#include "qvtools/text/gbk_text.h"

namespace qv::importing {

namespace {

bool fits(const Vec& p) {
  constexpr double kFarthest = 1e30;
  return std::fabs(p.x) < kFarthest && std::fabs(p.y) < kFarthest && std::fabs(p.z) < kFarthest;
}

}  // namespace

void Output::begin(CPtrList& list, const Vec& shift) {
  list_ = &list;
  shift_ = shift;
}

int nearest_color(int rgb) {
  const Palette& palette = StandardPalette();
  int best = 7;
  int least = INT_MAX;
  for (int i = 1; i < 256; ++i) {
    if (i == 9) i = 16;  // what this library shows for 9 to 15 is its own
    const COLORREF color = palette[static_cast<std::size_t>(i)];
    const auto apart = [&](int shift) {
      const int d = (rgb >> (16 - shift) & 255) - static_cast<int>(color >> shift & 255);
      return d * d;
    };
    const int distance = apart(0) + apart(8) + apart(16);
    if (distance >= least) continue;
    least = distance;
    best = i;
  }
  return best;
}

void Look::set_color(int number) {
  color = number;
  trueColor = -1;
}

void Look::set_true_color(int rgb) {
  trueColor = rgb & 0xFFFFFF;
  color = nearest_color(trueColor);
}

void Look::set_raw_color(int raw) {
  enum { ByLayer = 0xC0, TrueColor = 0xC2, Number = 0xC3 };
  const int kind = raw >> 24 & 0xFF;
  const int number = raw & 0xFF;
  if (kind == ByLayer || (kind == Number && number == 0)) set_color(kByLayer);
  if (kind == Number && number != 0) set_color(number);
  if (kind == TrueColor) set_true_color(raw);
}

bool Output::rounded(const Vec& p, Point3& out) {
  if (!fits(p)) return false;
  bounds.add(p.x, p.y);
  out = {static_cast<float>(p.x - shift_.x), static_cast<float>(p.y - shift_.y), static_cast<float>(p.z)};
  return true;
}

void Output::dress(char (&layer)[kNameSize], char (&lineType)[kNameSize], int& color) {
  std::memcpy(layer, tables_.layer_record(look.layer).m_szName, kNameSize);
  if (look.lineType >= 0) std::memcpy(lineType, tables_.line_type_record(look.lineType).m_szName, kNameSize);
  color = look.color;
}

bool Output::put(ACAD_ENTITY* record, const std::string& text) {
  if (!list_->AddTail(record)) {
    delete record;
    throw std::bad_alloc();
  }
  ++made;
  if (notes && (look.lineWeight != kWeightByLayer || look.trueColor >= 0 || !text.empty()))
    notes->entities.push_back({record, look.lineWeight, look.trueColor, text});
  return true;
}

bool Output::point(const Vec& p) {
  if (window && (p.x < window->x1 || p.x > window->x2 || p.y < window->y1 || p.y > window->y2)) return true;
  Point3 at;
  if (!rounded(p, at)) return false;
  auto* const record = new ACAD_POINT;
  std::memcpy(record->m_szLayer, tables_.layer_record(look.layer).m_szName, kNameSize);
  record->m_Point = at;
  return put(record);
}

bool Output::line(const Vec& a, const Vec& b) {
  if (window) return cut_line(a, b);
  if (tables_.is_beyond(look.lineType)) return put_dashes(vertices_of({a, b}), false);
  Point3 from;
  Point3 to;
  if (!rounded(a, from) || !rounded(b, to)) return false;
  auto* const record = new ACAD_LINE;
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  record->m_Start = from;
  record->m_End = to;
  return put(record);
}

namespace {

/// Whether the box of a circle lies within the window wholly.
bool lies_within(const Window& w, const Vec& center, double radius) {
  return center.x - radius >= w.x1 && center.x + radius <= w.x2 && center.y - radius >= w.y1 &&
         center.y + radius <= w.y2;
}

}  // namespace

bool Output::circle(const Vec& center, double radius) {
  Point3 at;
  Point3 corner;
  if ((window && !lies_within(*window, center, radius)) || tables_.is_beyond(look.lineType))
    return arc(center, radius, 0, 360);
  if (!(radius < 1e30) || !rounded(center, at) || !rounded(center + Vec{radius, radius, 0}, corner) ||
      !rounded(center - Vec{radius, radius, 0}, corner))
    return false;
  auto* const record = new ACAD_CIRCLE;
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  record->m_Center = at;
  record->m_fRadius = static_cast<float>(radius);
  return put(record);
}

bool Output::arc(const Vec& center, double radius, double start, double end) {
  Point3 at;
  if (!(radius < 1e30) || !std::isfinite(start) || !std::isfinite(end)) return false;
  if ((window && !lies_within(*window, center, radius)) || tables_.is_beyond(look.lineType)) {
    std::vector<Vec> points;
    const double sweep = end > start ? end - start : end - start + 360;
    flatten_arc(center, radius, radians(start), radians(sweep), tolerance, points);
    return polyline(vertices_of(points), 0);
  }
  if (!rounded(center, at)) return false;
  // Within a box that has the whole circle an arc adds nothing.
  if (!lies_within({bounds.x1, bounds.y1, bounds.x2, bounds.y2}, center, radius))
    for (const double angle : {start, end, (start + (end < start ? end + 360 : end)) / 2}) {
      const Vec p = center + Vec{std::cos(radians(angle)), std::sin(radians(angle)), 0} * radius;
      bounds.add(p.x, p.y);
    }
  auto* const record = new ACAD_ARC;
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  record->m_Center = at;
  record->m_fRadius = static_cast<float>(radius);
  record->m_fStartAngle = static_cast<float>(start);
  record->m_fEndAngle = static_cast<float>(end);
  return put(record);
}

bool Output::polyline(std::span<const Vertex> vertices, int flags) {
  if (vertices.empty()) return true;
  if (window) return cut_polyline(vertices, flags);
  if (tables_.is_beyond(look.lineType)) return put_dashes(vertices, (flags & 1) != 0);
  auto record = std::make_unique<ACAD_POLYLINE>();
  record->m_Vertices.SetSize(static_cast<int>(vertices.size()));
  int i = 0;
  for (const Vertex& from : vertices) {
    ACAD_VERTEX& to = record->m_Vertices[i++];
    if (!rounded(from.at, to.m_Point)) return false;
    to.m_fStartWidth = static_cast<float>(from.startWidth);
    to.m_fEndWidth = static_cast<float>(from.endWidth);
    to.m_fBulge = static_cast<float>(from.bulge);
    if (!std::isfinite(to.m_fStartWidth + to.m_fEndWidth + to.m_fBulge)) return false;
    // The display has them from the header where none is set at the vertices.
    if (from.bulge != 0) {
      const Vec& next = vertices[static_cast<std::size_t>(i) % vertices.size()].at;
      const Vec chord = next - from.at;
      const Vec top = middle(from.at, next) + Vec{chord.y, -chord.x, 0} * (from.bulge / 2);
      bounds.add(top.x, top.y);
    }
  }
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  for (ACAD_VERTEX& vertex : record->m_Vertices) std::memcpy(vertex.m_szLayer, record->m_szLayer, kNameSize);
  record->m_First = record->m_Vertices[0].m_Point;
  record->m_Second = record->m_Vertices[vertices.size() > 1 ? 1 : 0].m_Point;
  record->m_fStartWidth = record->m_Vertices[0].m_fStartWidth;
  record->m_fEndWidth = record->m_Vertices[0].m_fEndWidth;
  record->m_nFlags = flags;
  return put(record.release());
}

bool Output::solid(const Vec (&corners)[4]) {
  if (window) return cut_solid(corners);
  Point3 at[4];
  for (int i = 0; i < 4; ++i)
    if (!rounded(corners[i], at[i])) return false;
  auto* const record = new ACAD_SOLID;
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  std::copy_n(at, 4, record->m_Corner);
  return put(record);
}

bool Output::face(const Vec (&corners)[4]) {
  if (window) {
    for (int i = 0; i < 4; ++i) cut_line(corners[i], corners[(i + 1) % 4]);
    return true;
  }
  Point3 at[4];
  for (int i = 0; i < 4; ++i)
    if (!rounded(corners[i], at[i])) return false;
  auto* const record = new ACAD_3DFACE;
  dress(record->m_szLayer, record->m_szLType, record->m_nColor);
  std::copy_n(at, 4, record->m_Corner);
  return put(record);
}

namespace {

/// How much of a text a record takes: a letter or an escape that would be cut stands in the next one.
std::size_t length_of_piece(std::string_view text, std::size_t most) {
  constexpr std::size_t kEscape = 7;  // "\U+1234"
  const std::size_t length = std::max<std::size_t>(1, cut_length(text.data(), most));
  const std::size_t escape = length < text.size() ? text.substr(0, length).rfind("\\") : 0;
  const bool cut = escape > 0 && escape != text.npos && escape + kEscape > length &&
                   std::string_view("\\U+").starts_with(text.substr(escape, 3)) &&
                   cut_length(text.data(), escape) == escape;  // else it is the second byte of a letter
  return cut ? escape : length;
}

}  // namespace

bool Output::text(const TextLine& text) {
  if (window && (text.at.x < window->x1 || text.at.x > window->x2 || text.at.y < window->y1 || text.at.y > window->y2))
    return true;
  // A record holds 99 bytes: the rest goes on behind, by its measured width.
  constexpr std::size_t kMost = kContentsSize - 1;
  Vec place = text.at;
  const int justify = text.bytes.size() > kMost ? 0 : text.justify;  // what is divided has one left end after the other
  for (std::string_view left = text.bytes; !left.empty();) {
    const std::string_view piece = left.substr(0, length_of_piece(left, kMost));
    Point3 at;
    Point3 align;
    if (!rounded(place, at) || !rounded(justify ? text.align : place, align)) return false;
    const ACAD_STYLE& style = tables_.style(text.style);
    if (!std::isfinite(text.turn) || !(text.height < 1e30) || !(text.width < 1e6)) return false;
    auto* const record = new ACAD_TEXT;
    dress(record->m_szLayer, record->m_szLType, record->m_nColor);
    record->m_bWidthGiven = 1;
    record->m_Insert = at;
    record->m_Align = justify ? align : Point3{};
    record->m_nJustify = justify;
    record->m_fHeight = static_cast<float>(text.height);
    record->m_fRotation = static_cast<float>(text.turn);
    record->m_fWidthFactor = static_cast<float>(text.width);
    std::memcpy(record->m_szText, piece.data(), piece.size());
    record->m_szText[piece.size()] = '\0';
    copy_text(record->m_szStyle, style.m_szName);
    put(record, left.size() == text.bytes.size() ? text.unicode : std::string());
    left.remove_prefix(piece.size());
    if (left.empty()) break;
    report_.remark("a text longer than 99 bytes was divided");
    const double advance = text_width(std::string(piece), text.height, text.width);
    place = place + Vec{std::cos(radians(text.turn)), std::sin(radians(text.turn)), 0} * advance;
  }
  return true;
}

bool Output::insert(const char* block, const Vec& at) {
  // The point itself shows nothing: the bounds have what the block shows.
  if (!fits(at)) return false;
  const Vec p = at - shift_;
  auto* const record = new ACAD_INSERT;
  std::memcpy(record->m_szLayer, tables_.layer_record(look.layer).m_szName, kNameSize);
  record->m_nColor = look.color;
  copy_text(record->m_szBlock, block);
  record->m_Insert = {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
  return put(record);
}

}  // namespace qv::importing
