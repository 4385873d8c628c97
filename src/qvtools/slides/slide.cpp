#include "qvtools/slides/slide.h"

#include <algorithm>
#include <cmath>

#include "qvtools/dxf/model/document.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/text/numbers.h"

using qv::detail::unless_out_of_memory;

namespace {

int rounded(double v) {
  return qv::TruncInt(std::floor(v + 0.5));
}

/// A colour item's number as scripts and drawings have it: taken as signed, made absolute.
int absolute_color(unsigned char color) {
  return std::abs(static_cast<int>(static_cast<signed char>(color)));
}

}  // namespace

int CWxSlide::Form_SCR(const char* path) {
  qv::SavedFile saved(path, qv::SavedFile::Lines::CrLf);
  if (!saved.is_open()) return 0;
  std::FILE* const file = saved.stream();
  using Line = qv::FormattedText<512>;
  for (const CSlideItem& item : m_Items) {
    const auto x = [&](int i) { return static_cast<double>(item.m_fX[i]); };
    const auto y = [&](int i) { return static_cast<double>(item.m_fY[i]); };
    if (item.m_byKind == CSlideItem::kVector)
      std::fputs(Line("line %.3f,%.3f %.3f,%.3f \n", x(0), y(0), x(1), y(1)), file);
    else if (item.m_byKind == CSlideItem::kSolid)
      std::fputs(
          Line("solid %.3f,%.3f %.3f,%.3f %.3f,%.3f %.3f,%.3f \n", x(0), y(0), x(1), y(1), x(2), y(2), x(3), y(3)),
          file);
    else
      std::fputs(Line("color %d\n", absolute_color(item.m_byKind)), file);
  }
  return saved.commit() ? 1 : 0;
}

CRect CWxSlide::GetRect() const {
  double x1 = 1e10;
  double y1 = 1e10;
  double x2 = -1e10;
  double y2 = -1e10;
  for (const CSlideItem& item : m_Items) {
    const int points = item.m_byKind == CSlideItem::kVector ? 2 : item.m_byKind == CSlideItem::kSolid ? 4 : 0;
    for (int i = 0; i < points; ++i) {
      x1 = std::min<double>(x1, item.m_fX[i]);
      y1 = std::min<double>(y1, item.m_fY[i]);
      x2 = std::max<double>(x2, item.m_fX[i]);
      y2 = std::max<double>(y2, item.m_fY[i]);
    }
  }
  if (x1 > x2) return {};
  return {rounded(x1), rounded(y1), rounded(x2), rounded(y2)};
}

int CWxSlide::SetScale(const CRect* rect) {
  const double width = static_cast<double>(rect->right) - rect->left;
  const double height = static_cast<double>(rect->bottom) - rect->top;
  const CRect box = GetRect();
  const double w = (static_cast<double>(box.right) - box.left) * 1.1;
  const double h = (static_cast<double>(box.bottom) - box.top) * 1.1;
  if (width < 2 || height < 2 || w <= 0 || h <= 0) return 0;
  const double scale = w / h >= width / height ? width / w : height / h;
  m_fScale = static_cast<float>(scale);
  const double cx = (static_cast<double>(box.left) + box.right) / 2;
  const double cy = (static_cast<double>(box.top) + box.bottom) / 2;
  m_fOriginX = static_cast<float>(cx - (static_cast<double>(rect->left) + rect->right) / scale / 2);
  m_fOriginY = static_cast<float>(cy + (static_cast<double>(rect->top) + rect->bottom) / scale / 2);
  return 1;
}

CPoint CWxSlide::FPtoDP(float x, float y) const {
  return {rounded((static_cast<double>(x) - m_fOriginX) * m_fScale),
          rounded((static_cast<double>(m_fOriginY) - y) * m_fScale)};
}

COLORREF CWxSlide::GetColor(int number) {
  return number >= 0 && number < 16 ? ACAD_ENTITY::GetColor(number) : 0xFFFFFF;
}

void CWxSlide::Draw(CDC* dc, const CRect* rect) {
  if (!SetScale(rect)) return;
  const bool black = dc->IsPrinting() || dc->IsMetafile();
  CPen pen{qv::PenStyle::Solid, 1, black ? 0 : GetColor(7)};
  const CPen* const before = dc->SelectObject(&pen);
  for (const CSlideItem& item : m_Items) {
    const auto point = [&](int i) { return FPtoDP(item.m_fX[i], item.m_fY[i]); };
    if (item.m_byKind == CSlideItem::kVector) {
      const CPoint from = point(0);
      const CPoint to = point(1);
      dc->MoveTo(from.x, from.y);
      dc->LineTo(to.x, to.y);
    } else if (item.m_byKind == CSlideItem::kSolid) {
      const CPoint corners[4] = {point(0), point(1), point(2), point(3)};
      CRgn region;
      region.CreatePolygonRgn(corners, 4, qv::FillRule::Winding);
      dc->FillRgn(region, CBrush{pen.color});
    } else if (!black) {
      pen.color = GetColor(static_cast<signed char>(item.m_byKind));
      dc->SelectObject(&pen);
    }
  }
  dc->SelectObject(before);
}

void CWxSlide::add(const CSlideItem& item) {
  unless_out_of_memory([&] { m_Items.push_back(item); });
}

void CWxSlide::SetColor(int color) {
  CSlideItem item;
  item.m_byKind = static_cast<unsigned char>(color & 255);
  add(item);
}

void CWxSlide::add_vector(float x1, float y1, float x2, float y2) {
  CSlideItem item;
  item.m_byKind = CSlideItem::kVector;
  item.m_fX[0] = x1;
  item.m_fY[0] = y1;
  item.m_fX[1] = x2;
  item.m_fY[1] = y2;
  add(item);
}

void CWxSlide::Draw_Solid(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4) {
  CSlideItem item;
  item.m_byKind = CSlideItem::kSolid;
  const float x[] = {x1, x2, x3, x4};
  const float y[] = {y1, y2, y3, y4};
  std::copy_n(x, 4, item.m_fX);
  std::copy_n(y, 4, item.m_fY);
  add(item);
}

void CWxSlide::Draw_Pline(float x1, float y1, float x2, float y2, float w1, float w2) {
  constexpr double kQuarter = 3.14159265358979323846 / 2;
  const double a = get_line_angle(x1, y1, x2, y2);
  const auto x = [&](double turn, double width) { return static_cast<float>(std::cos(a + turn) * width / 2); };
  const auto y = [&](double turn, double width) { return static_cast<float>(std::sin(a + turn) * width / 2); };
  Draw_Solid(x(-kQuarter, w1), y(-kQuarter, w1), x(kQuarter, w1), y(kQuarter, w1), x(-kQuarter, w2), y(-kQuarter, w2),
             x(kQuarter, w2), y(kQuarter, w2));
}

void CWxSlide::LineTo(float x, float y) {
  add_vector(m_fPenX, m_fPenY, x, y);
  MoveTo(x, y);
}

void CWxSlide::PlineTo(float x, float y, float w1, float w2) {
  Draw_Pline(m_fPenX, m_fPenY, x, y, w1, w2);
  MoveTo(x, y);
}

void CWxSlide::Draw_Lines(int n, const float* x, const float* y) {
  for (int i = 0; i + 1 < n; ++i) add_vector(x[i], y[i], x[i + 1], y[i + 1]);
}

namespace {

double clockwise(float degrees) {
  return -static_cast<double>(degrees) * 3.1415927 / 180;
}

}  // namespace

void CWxSlide::Draw_Rect_C(float w, float h, float cx, float cy, float angle) {
  float x[5] = {-w / 2, w / 2, w / 2, -w / 2, 0};
  float y[5] = {-h / 2, -h / 2, h / 2, h / 2, 0};
  for (int i = 0; i < 4; ++i) {
    rotate_coordinate(clockwise(angle), x[i], y[i]);
    x[i] += cx;
    y[i] += cy;
  }
  x[4] = x[0];
  y[4] = y[0];
  Draw_Lines(5, x, y);
}

void CWxSlide::Draw_Rect_LB(float w, float h, float x, float y, float angle) {
  float dx = w / 2;
  float dy = h / 2;
  rotate_coordinate(clockwise(angle), dx, dy);
  Draw_Rect_C(w, h, x + dx, y + dy, angle);
}

int Form_Dxf(DXF* dxf, CWxSlide* slide) {
  char color[16] = "7";
  for (const CSlideItem& item : slide->m_Items) {
    const auto& x = item.m_fX;
    const auto& y = item.m_fY;
    if (item.m_byKind == CSlideItem::kVector)
      dxf->Write_Line(x[0], y[0], 0, x[1], y[1], 0, "0", color, "BYLAYER");
    else if (item.m_byKind == CSlideItem::kSolid)
      dxf->Write_Solid(x[0], y[0], 0, x[1], y[1], 0, x[2], y[2], 0, x[3], y[3], 0, "0", color, "BYLAYER");
    else
      qv::format_text(color, sizeof color, "%d", std::min(absolute_color(item.m_byKind), 255));
  }
  return 1;
}
