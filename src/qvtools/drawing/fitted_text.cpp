#include "qvtools/drawing/fitted_text.h"

#include <algorithm>
#include <cstring>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/text/code_page.h"
#include "qvtools/text/gbk_text.h"

using namespace qv::detail;

namespace qv {

namespace {

constexpr float kWidthFactor = 0.75F;    // of the composer's styles
constexpr float kLeastNarrowing = 0.6F;  // of a text's usual width

/// The style "HZ" with another width factor while it lives: a text takes its style's when it is written.
class Narrowed {
 public:
  Narrowed(CBase_SGT& sgt, float share) {
    for (int i = 0; i < sgt.m_nStyle && !style_; ++i)
      if (equals_field(sgt.m_pStyle[i].m_szName, kSheetStyle)) style_ = &sgt.m_pStyle[i];
    if (!style_) return;
    usual_ = style_->m_fWidthFactor;
    style_->m_fWidthFactor *= share;
  }
  ~Narrowed() {
    if (style_) style_->m_fWidthFactor = usual_;
  }
  Narrowed(const Narrowed&) = delete;
  Narrowed& operator=(const Narrowed&) = delete;

 private:
  ACAD_STYLE* style_ = nullptr;
  float usual_ = kWidthFactor;
};

float share_before(Across across) {
  return across == Across::Left ? 0 : across == Across::Center ? 0.5F : 1;
}

}  // namespace

float SheetTextWidth(const char* text, float height) {
  if (!std::strstr(text, "\\U+")) return G_ShapeFont.GetHzWidth(text, height, kWidthFactor);
  return G_ShapeFont.GetHzWidth(drawn_text(text).c_str(), height, kWidthFactor);
}

void DrawSheetText(CBase_SGT& sgt, float x, float y, float height, const char* text, Across across, float angle) {
  if (*text == '\0') return;
  const SymbolEnvironment environment(sgt);
  sgt.SetCurStyle(kSheetStyle);
  const Place at = Frame(x, y, angle).at(-share_before(across) * SheetTextWidth(text, height), 0);
  sgt.Draw_Text(at.x, at.y, height, angle, text);
}

void DrawFittedText(CBase_SGT& sgt, const CFRect& box, Across across, float height, const char* text, float gap,
                    bool upright) {
  const float room = (upright ? box.Height() : box.Width()) - 2 * gap;
  const float wanted = SheetTextWidth(text, height);
  if (!(room > 0) || *text == '\0') return;
  const float share = wanted > room ? room / wanted : 1;
  if (share < kLeastNarrowing) height *= share / kLeastNarrowing;
  const float width = std::min(wanted, room);
  const float along = gap + share_before(across) * (room - width);
  const float under = ((upright ? box.Width() : box.Height()) - height) / 2;
  const SymbolEnvironment environment(sgt);
  const Narrowed narrowed(sgt, std::max(share, kLeastNarrowing));
  sgt.SetCurStyle(kSheetStyle);
  if (upright)
    sgt.Draw_Text(box.x2 - under, box.y1 + along, height, 90, text);
  else
    sgt.Draw_Text(box.x1 + along, box.y1 + under, height, 0, text);
}

}  // namespace qv
