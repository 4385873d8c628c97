// Any bytes as a drawing file, loaded whole: measured, picked, drawn, merged, saved, and loaded and saved again.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/geometry/values/constants.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "scratch_file.h"

namespace {

using qvfuzz::require;
using qvfuzz::saved;

constexpr COLORREF kGround = 0x123456;  // of no line

/// A page that sees every coordinate that the drawing hands on.
class CheckingContext : public CDC {
 public:
  void MoveTo(int x, int y) override { check(x, y); }
  void LineTo(int x, int y) override { check(x, y); }
  void SetPixel(int x, int y, COLORREF) override { check(x, y); }
  void FillRgn(const CRgn& region, const CBrush&) override {
    for (int i = 0; i < region.Count(); ++i) check(region.Points()[i].x, region.Points()[i].y);
  }
  CSize GetResolution() const override { return {300, 200}; }

 private:
  static void check(int x, int y) { require(std::abs(x) <= 32767 && std::abs(y) <= 32767); }
};

/// Whether each pixel that is set in one picture has one at its place or beside it in the other, or beyond its border.
bool lies_in(const qv::BitmapContext& picture, const qv::BitmapContext& other) {
  const auto is_set = [](const qv::BitmapContext& bitmap, int x, int y) {
    return x < 0 || y < 0 || x >= bitmap.Width() || y >= bitmap.Height() || bitmap.GetPixel(x, y) != kGround;
  };
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) {
      bool found = !is_set(picture, x, y);
      for (int i = 0; i < 9 && !found; ++i) found = is_set(other, x + i % 3 - 1, y + i / 3 - 1);
      if (!found) return false;
    }
  }
  return true;
}

/// Whether two pictures of a size show the same, to a pixel. Most are equal, and compared at once.
bool look_alike(const qv::BitmapContext& a, const qv::BitmapContext& b) {
  const auto count = static_cast<std::size_t>(a.Width()) * static_cast<std::size_t>(a.Height());
  return std::equal(a.Pixels(), a.Pixels() + count, b.Pixels()) || (lies_in(a, b) && lies_in(b, a));
}

/// The prepared drawing has the picture of the direct one and just its picks.
void look_prepared(DXF& dxf, const CFRect& extent, CFCoor& whole, CFCoor& near) {
  const qv::LinePatterns patterns = qv::PatternsOf(dxf);
  const qv::Appearance appearance{nullptr, &patterns};
  const float x = (extent.x1 + extent.x2) / 2;
  const float y = (extent.y1 + extent.y2) / 2;
  for (const bool plan : {true, false}) {
    const float a = plan ? 0 : 0.5F;
    const float b = plan ? HALF_PI_F : 0.7F;
    qv::PreparedDrawing prepared = plan ? qv::PreparedDrawing(dxf) : qv::PreparedDrawing(dxf, a, b);
    for (CFCoor* const coor : {&whole, &near}) {
      qv::BitmapContext direct(300, 200, kGround);
      qv::BitmapContext own(300, 200, kGround);
      plan ? dxf.Draw(&direct, coor, appearance) : dxf.Draw3D(&direct, coor, a, b, appearance);
      prepared.Draw(&own, coor, appearance);
      require(look_alike(direct, own));
    }
    for (const CFRect& rect : {extent, CFRect(extent.x1, extent.y1, x, y), CFRect(0, 0, 10, 10)}) {
      for (const int mode : {0, 1}) {
        const int first = dxf.HitTest(rect, mode, a, b);
        const std::vector<ACAD_ENTITY*> taken = prepared.Pick(rect, mode);
        require(taken.empty() == (first == 0));
        if (first == 0) continue;
        POSITION at = dxf.m_EntityList.GetHeadPosition();
        for (int i = 1; i < first; ++i) dxf.m_EntityList.GetNext(at);
        require(taken[0] == dxf.m_EntityList.GetAt(at));
      }
    }
  }
}

void look_at(DXF& dxf) {
  const CFRect extent = dxf.GetFRect();
  dxf.GetFRect3D(0.5F, 0.7F);
  dxf.HitTest(CFRect(0, 0, 10, 10), 1, 0, 1.5707964F);
  dxf.HitTest(extent, 0, 0.5F, 0.7F);
  CFCoor whole(CFPoint(extent.x1, extent.y2), 1, 1);
  const float width = extent.x2 - extent.x1;
  if (width > 0 && std::isfinite(width)) whole.SetScale(300 / width);
  CFCoor near(CFPoint(0, 0), 1000, 0);
  CheckingContext page;
  qv::BitmapContext bitmap(300, 200, 0xFFFFFF);
  for (CDC* dc : {static_cast<CDC*>(&page), static_cast<CDC*>(&bitmap)}) {
    dxf.Draw(dc, &whole);
    dxf.Draw(dc, &near);
    dxf.Draw3D(dc, &whole, 0.5F, 0.7F);
  }
  look_prepared(dxf, extent, whole, near);
}

std::string saved_again(const char* from, const char* name) {
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Read_FileDxf_To_Mem(qvfuzz::scratch().path(from).c_str());
  return saved(dxf, name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qvfuzz::prepare_host();
  DXF dxf;
  dxf.New_MemDxf();
  dxf.Read_FileDxf_To_Mem(qvfuzz::scratch_file(data, size).c_str());
  look_at(dxf);
  saved(dxf, "1.dxf");
  // What the form cannot hold is gone after the first file; from the second on nothing may change.
  const std::string second = saved_again("1.dxf", "2.dxf");
  require(saved_again("2.dxf", "3.dxf") == second);
  DXF merged;
  merged.New_MemDxf();
  merged.InsertDxf(&dxf, 10, 20, 30);
  require(merged.m_EntityList.GetCount() == dxf.m_EntityList.GetCount());
  return 0;
}
