#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "commands.h"
#include "common/picture_file.h"
#include "drawing_file.h"
#include "failure.h"
#include "slide_samples.h"

namespace qvdraw {

namespace {

/// A change to colour 255 is kept as a vector, which begins and ends at the origin: it becomes the change to colour 7
/// that it was meant as, so that it moves no box and leaves no line.
void mend_colors(CWxSlide& slide) {
  constexpr unsigned char kWhite = 7;
  const auto is_origin = [](const CSlideItem& item) {
    return item.m_fX[0] == 0 && item.m_fY[0] == 0 && item.m_fX[1] == 0 && item.m_fY[1] == 0;
  };
  for (CSlideItem& item : slide.m_Items)
    if (item.m_byKind == CSlideItem::kVector && is_origin(item)) item.m_byKind = kWhite;
}

/// Colours above 15, which a slide shows in white, become the nearest of those that it can show.
void choose_shown_colors(CWxSlide& slide) {
  constexpr int kShown = 16;
  const auto component = [](COLORREF color, int shift) { return static_cast<int>(color >> shift & 255); };
  const auto distance = [&](COLORREF a, COLORREF b) {
    int sum = 0;
    for (const int shift : {0, 8, 16}) {
      const int d = component(a, shift) - component(b, shift);
      sum += d * d;
    }
    return sum;
  };
  for (CSlideItem& item : slide.m_Items) {
    if (item.m_byKind < kShown || item.m_byKind == CSlideItem::kVector || item.m_byKind == CSlideItem::kSolid) continue;
    const COLORREF wanted = qv::StandardPalette()[item.m_byKind];
    int nearest = 1;  // never black, which is the background
    for (int i = 2; i < kShown; ++i)
      if (distance(wanted, CWxSlide::GetColor(i)) < distance(wanted, CWxSlide::GetColor(nearest))) nearest = i;
    item.m_byKind = static_cast<unsigned char>(nearest);
  }
}

/// Loads a slide file, or the slide "LIBRARY.NAME" of a library.
CWxSlide load_slide(const std::string& name) {
  CWxSlide slide;
  CWxSlideLib library;
  if (slide.Read_SLD(name.c_str()) || library.Read_SLB_SLD(CString(name.c_str()), &slide)) {
    mend_colors(slide);
    if (slide.m_Items.empty()) std::fprintf(stderr, "qvdraw: %s: the slide is empty\n", name.c_str());
    return slide;
  }
  if (std::filesystem::exists(name)) throw failure(name, "is no slide file");
  throw std::runtime_error(name + ": there is no such slide file, nor a library with such a slide");
}

void open_library(CWxSlideLib& library, const std::string& path) {
  if (library.Open_SLB(path.c_str())) return;
  throw failure(path, "is no slide library");
}

void list(CWxSlideLib& library) {
  for (int i = 0; i < library.m_nCount; ++i) {
    CWxSlide slide;
    const CWxSlideLib::Entry& entry = library.m_Directory[static_cast<std::size_t>(i)];
    const bool read = library.Read_SLD(i, &slide) != 0;
    mend_colors(slide);
    const CRect box = slide.GetRect();
    if (read)
      std::printf("%-32s %6u bytes  %5zu items  %d x %d\n", to_utf8(entry.m_szName).c_str(), entry.m_nLength,
                  slide.m_Items.size(), box.Width(), box.Height());
    else
      std::printf("%-32s %6u bytes  is no slide\n", to_utf8(entry.m_szName).c_str(), entry.m_nLength);
  }
}

void extract(CWxSlideLib& library, const std::string& directory) {
  std::error_code ignored;
  std::filesystem::create_directories(directory, ignored);
  const std::string prefix = directory + "/";
  for (int i = 0; i < library.m_nCount; ++i) {
    const char* name = library.m_Directory[static_cast<std::size_t>(i)].m_szName;
    if (!library.Pick_SLD(i, prefix.c_str())) throw std::runtime_error(to_utf8(name) + ": is no name for a file");
    if (!std::filesystem::exists(prefix + name + ".SLD"))
      throw std::runtime_error(prefix + name + ".SLD: cannot be written");
  }
}

/// All slides of a library in a grid, with their names.
void save_contact_sheet(CWxSlideLib& library, const std::string& path, int width) {
  constexpr int kName = 14;
  constexpr int kGap = 12;
  const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(library.m_nCount * 1.5))));
  const int rows = (library.m_nCount + columns - 1) / columns;
  const int cell = std::max(width / columns, 48);
  const int height = cell * 3 / 4;
  save_drawn(path, {columns * cell, std::min(rows * height, 32000)}, 0x000000, [&](CDC& dc) {
    for (int i = 0; i < library.m_nCount; ++i) {
      const int left = i % columns * cell;
      const int top = i / columns * height;
      CWxSlide slide;
      library.Read_SLD(i, &slide);
      mend_colors(slide);
      choose_shown_colors(slide);
      const CRect place(left + kGap, top + kGap, left + cell - kGap, top + height - kGap - kName - 4);
      slide.Draw(&dc, &place);
      const char* const name = library.m_Directory[static_cast<std::size_t>(i)].m_szName;
      const float size = kName;
      const float textWidth = G_ShapeFont.GetHzWidth(name, size, 0.75F);
      const CPen pen{qv::PenStyle::Solid, 1, dc.IsPrinting() ? 0 : CWxSlide::GetColor(7)};
      const CPen* const before = dc.SelectObject(&pen);
      G_ShapeFont.DrawHzShx(&dc, left + (cell - static_cast<int>(textWidth)) / 2, top + height - kGap, name, size, 0,
                            size * 0.75F, 1);
      dc.SelectObject(before);
    }
  });
}

}  // namespace

void run_slide(const SlideRequest& request) {
  const std::string& out = request.out;
  CWxSlide slide = load_slide(request.slide);
  if (qvapps::has_ending(out, ".scr")) {
    if (!slide.Form_SCR(out.c_str())) throw std::runtime_error(out + ": cannot be written");
  } else if (qvapps::has_ending(out, ".dxf")) {
    DXF dxf;
    dxf.New_MemDxf();
    Form_Dxf(&dxf, &slide);
    if (!dxf.Write_MemDxf_To_File(out.c_str())) throw std::runtime_error(out + ": cannot be written");
  } else {
    choose_shown_colors(slide);
    const CRect place(0, 0, request.size.cx, request.size.cy);
    save_drawn(out, request.size, 0x000000, [&](CDC& dc) { slide.Draw(&dc, &place); });
  }
}

void run_slides(const SlidesRequest& request) {
  CWxSlideLib library;
  open_library(library, request.library);
  if (!request.directory.empty()) extract(library, request.directory);
  if (!request.picture.empty()) save_contact_sheet(library, request.picture, request.size.cx);
  if (request.directory.empty() && request.picture.empty()) list(library);
}

}  // namespace qvdraw
