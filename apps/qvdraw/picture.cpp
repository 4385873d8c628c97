#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "arguments.h"
#include "drawing_file.h"
#include "platform/qt/qt_output.h"
#include "progress.h"

namespace qvdraw {

namespace {

const ACAD_LAYER* find_layer(const DXF& dxf, const char* name) {
  for (int i = 0; dxf.m_pLayer && i < dxf.m_nLayer; ++i)
    if (std::strcmp(dxf.m_pLayer[static_cast<std::size_t>(i)].m_szName, name) == 0)
      return &dxf.m_pLayer[static_cast<std::size_t>(i)];
  return nullptr;
}

template <class Record>
void resolve(const DXF& dxf, Record& record, bool whiteBackground) {
  constexpr int kWhite = 7;
  constexpr int kBlack = 0;
  const ACAD_LAYER* layer = find_layer(dxf, record.m_szLayer);
  if (record.m_nColor < 0) record.m_nColor = layer ? layer->m_nColor : kWhite;
  if (whiteBackground && record.m_nColor == kWhite) record.m_nColor = kBlack;
  if (layer && std::strcmp(record.m_szLType, "BYLAYER") == 0) qv::copy_text(record.m_szLType, layer->m_szLType);
}

void resolve_entity(const DXF& dxf, ACAD_ENTITY& entity, bool white) {
  switch (entity.GetType()) {
    case ACAD_TYPE_LINE:
      return resolve(dxf, static_cast<ACAD_LINE&>(entity), white);
    case ACAD_TYPE_TEXT:
      return resolve(dxf, static_cast<ACAD_TEXT&>(entity), white);
    case ACAD_TYPE_CIRCLE:
      return resolve(dxf, static_cast<ACAD_CIRCLE&>(entity), white);
    case ACAD_TYPE_ARC:
      return resolve(dxf, static_cast<ACAD_ARC&>(entity), white);
    case ACAD_TYPE_POLYLINE:
      return resolve(dxf, static_cast<ACAD_POLYLINE&>(entity), white);
    case ACAD_TYPE_SOLID:
      return resolve(dxf, static_cast<ACAD_SOLID&>(entity), white);
    case ACAD_TYPE_3DFACE:
      return resolve(dxf, static_cast<ACAD_3DFACE&>(entity), white);
    case ACAD_TYPE_POINT:
    case ACAD_TYPE_INSERT:
    case ACAD_TYPE_NONE:
    case ACAD_TYPE_END:
      break;
  }
}

/// The world rectangle that is shown, never empty.
CFRect shown_rect(DXF& dxf, const PictureOptions& options) {
  CFRect r = options.window      ? *options.window
             : options.projected ? dxf.GetFRect3D(options.viewA, options.viewB)
                                 : dxf.GetFRect();
  const bool finite = std::isfinite(r.x1) && std::isfinite(r.y1) && std::isfinite(r.x2) && std::isfinite(r.y2);
  if (!finite) r = CFRect();
  const float least = std::max(1e-3F, 1e-6F * std::max(std::fabs(r.x2), std::fabs(r.y2)));
  if (r.Width() < least) r.Inflect(least / 2, 0, least / 2, 0);
  if (r.Height() < least) r.Inflect(0, least / 2, 0, least / 2);
  if (!options.window) {
    const float margin = 0.02F * std::max(r.Width(), r.Height());
    r.Inflect(margin, margin, margin, margin);
  }
  return r;
}

/// The size of the picture, and the transform that fits the rectangle into its middle.
struct Fit {
  CSize size;
  CFCoor coor;
  Fit(const CFRect& r, const PictureOptions& options) : size(options.size) {
    if (!options.fixedSize) {
      const double height = size.cx * static_cast<double>(r.Height()) / r.Width();
      // Rounded up: the same picture comes when this size is asked for.
      size.cy = std::clamp(static_cast<int>(std::ceil(height)), size.cx / 8, size.cx * 4);
    }
    const double scale = std::min(size.cx / static_cast<double>(r.Width()), size.cy / static_cast<double>(r.Height()));
    const double x = (static_cast<double>(r.x1) + r.x2) / 2 - size.cx / scale / 2;
    const double y = (static_cast<double>(r.y1) + r.y2) / 2 + size.cy / scale / 2;
    coor.Init(CFPoint(static_cast<float>(x), static_cast<float>(y)), static_cast<float>(scale), 1);
  }
};

/// The screen of the program is the picture that it draws.
class PictureHost : public qv::ConsoleHost {
 public:
  explicit PictureHost(CSize size) : ConsoleHost(size) { qv::SetHost(this); }
  ~PictureHost() override { qv::SetHost(nullptr); }
};

bool ends_with(const std::string& text, const char* ending) {
  const std::size_t n = std::strlen(ending);
  return text.size() >= n && text.compare(text.size() - n, n, ending) == 0;
}

}  // namespace

void resolve_for_display(DXF& dxf, bool whiteBackground) {
  const auto resolve_all = [&](const CPtrList& list) {
    for_each<ACAD_ENTITY>(list, [&](ACAD_ENTITY& entity) { resolve_entity(dxf, entity, whiteBackground); });
  };
  resolve_all(dxf.m_EntityList);
  for_each<ACAD_BLOCK>(dxf.m_BlockList, [&](ACAD_BLOCK& block) { resolve_all(block.m_EntityList); });
}

void save_drawn(const std::string& path, CSize size, COLORREF background, const std::function<void(CDC&)>& draw) {
  constexpr int kPdfDotsPerInch = 300;
  const PictureHost host(size);
  const auto draw_on_background = [&](CDC& dc) {
    const CPoint corners[4] = {{0, 0}, {size.cx, 0}, {size.cx, size.cy}, {0, size.cy}};
    CRgn page;
    page.CreatePolygonRgn(corners, 4, qv::FillRule::Winding);
    dc.FillRgn(page, CBrush{background});
    draw(dc);
  };
  bool saved = false;
  if (ends_with(path, ".pdf")) {
    saved = qv::save_pdf(path, size, kPdfDotsPerInch, draw);
  } else if (ends_with(path, ".svg")) {
    saved = qv::save_svg(path, size, draw_on_background);
  } else if (ends_with(path, ".png")) {
    qv::BitmapContext bitmap(size.cx, size.cy, background);
    draw(bitmap);
    saved = qv::save_png(bitmap, path);
  } else {
    throw UsageError(path + ": a picture ends in .png, .svg or .pdf");
  }
  if (!saved) throw std::runtime_error(path + ": cannot be written");
}

void save_picture(DXF& dxf, const std::string& path, const PictureOptions& options) {
  const Progress progress("drawing " + path);
  PictureOptions sized = options;
  // A page of twice the picture's dots: at 300 an inch, 1600 pixels become 27 cm.
  if (ends_with(path, ".pdf")) sized.size = CSize(2 * options.size.cx, 2 * options.size.cy);
  Fit fit(shown_rect(dxf, sized), sized);
  save_drawn(path, fit.size, options.white ? 0xFFFFFF : 0x000000, [&](CDC& dc) {
    if (options.projected)
      dxf.Draw3D(&dc, &fit.coor, options.viewA, options.viewB);
    else
      dxf.Draw(&dc, &fit.coor);
  });
}

}  // namespace qvdraw
