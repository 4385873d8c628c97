#include "qvtools/platform/win32/gdi_output.h"

#include <objidl.h>
// Stands on the streams of the one above.
#include <gdiplus.h>

#include <algorithm>
#include <vector>

#include "qvtools/system/saved_file.h"
#include "qvtools/system/windows/code_page.h"

namespace qv {
namespace {

BITMAPINFO bitmap_info(int width, int height) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

/// GDI+, for as long as the object lives.
class GdiPlus {
 public:
  GdiPlus() {
    const Gdiplus::GdiplusStartupInput input;
    started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
  }
  ~GdiPlus() {
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;
  bool started() const { return started_; }

 private:
  ULONG_PTR token_ = 0;
  bool started_ = false;
};

// {557CF406-1A04-11D3-9A73-0000F81EF32E}: GDI+'s PNG encoder.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

bool encode_png(const BitmapContext& bitmap, IStream& stream) {
  BYTE* const pixels = reinterpret_cast<BYTE*>(const_cast<std::uint32_t*>(bitmap.Pixels()));
  Gdiplus::Bitmap image(bitmap.Width(), bitmap.Height(), bitmap.Width() * 4, PixelFormat32bppRGB, pixels);
  return image.Save(&stream, &kPngEncoder, nullptr) == Gdiplus::Ok;
}

/// A rectangle of screen pixels in hundredths of a millimetre, as metafiles are framed.
RECT frame_of(CSize size) {
  const HDC screen = GetDC(nullptr);
  const auto scaled = [&](int pixels, int millimetres, int resolution) {
    const int all = std::max(GetDeviceCaps(screen, resolution), 1);
    return static_cast<LONG>(MulDiv(pixels, GetDeviceCaps(screen, millimetres) * 100, all));
  };
  const RECT frame = {0, 0, scaled(size.cx, HORZSIZE, HORZRES), scaled(size.cy, VERTSIZE, VERTRES)};
  ReleaseDC(nullptr, screen);
  return frame;
}

}  // namespace

GdiBitmap::GdiBitmap(int width, int height, COLORREF background)
    : width_(std::max(width, 1)), height_(std::max(height, 1)), dc_(CreateCompatibleDC(nullptr)) {
  const BITMAPINFO info = bitmap_info(width_, height_);
  bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
  if (!bitmap_) {
    DeleteDC(dc_);
    dc_ = nullptr;
    return;
  }
  before_ = SelectObject(dc_, bitmap_);
  const std::uint32_t pixel = (background & 0xFF) << 16 | (background & 0xFF00) | (background >> 16 & 0xFF);
  std::fill_n(static_cast<std::uint32_t*>(bits_), static_cast<std::size_t>(width_) * height_, pixel);
}

GdiBitmap::~GdiBitmap() {
  if (!dc_) return;
  SelectObject(dc_, before_);
  DeleteObject(bitmap_);
  DeleteDC(dc_);
}

const std::uint32_t* GdiBitmap::Pixels() const {
  GdiFlush();
  return static_cast<const std::uint32_t*>(bits_);
}

COLORREF GdiBitmap::GetPixel(int x, int y) const {
  const std::uint32_t v = Pixels()[static_cast<std::size_t>(y) * width_ + x];
  return rgb(v >> 16, v >> 8, v);
}

bool show_bitmap(HDC dc, int x, int y, const BitmapContext& bitmap) {
  const BITMAPINFO info = bitmap_info(bitmap.Width(), bitmap.Height());
  const auto width = static_cast<DWORD>(bitmap.Width()), height = static_cast<DWORD>(bitmap.Height());
  return SetDIBitsToDevice(dc, x, y, width, height, 0, 0, 0, height, bitmap.Pixels(), &info, DIB_RGB_COLORS) != 0;
}

bool save_png_with_gdi(const BitmapContext& bitmap, const std::string& path) {
  const GdiPlus plus;
  IStream* stream = nullptr;
  if (!plus.started() || CreateStreamOnHGlobal(nullptr, TRUE, &stream) != S_OK) return false;
  HGLOBAL memory = nullptr;
  STATSTG state = {};
  bool saved = encode_png(bitmap, *stream) && GetHGlobalFromStream(stream, &memory) == S_OK &&
               stream->Stat(&state, STATFLAG_NONAME) == S_OK;
  if (saved) {
    saved = save_bytes(path.c_str(), GlobalLock(memory), static_cast<std::size_t>(state.cbSize.QuadPart));
    GlobalUnlock(memory);
  }
  stream->Release();
  return saved;
}

bool save_emf(const std::string& path, CSize size, const std::function<void(CDC&)>& draw) {
  const RECT frame = frame_of(size);
  const HDC dc = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  if (!dc) return false;
  {
    GdiContext context(dc);
    draw(context);
  }
  const HENHMETAFILE metafile = CloseEnhMetaFile(dc);
  std::vector<BYTE> bytes(GetEnhMetaFileBits(metafile, 0, nullptr));
  const auto n = GetEnhMetaFileBits(metafile, static_cast<UINT>(bytes.size()), bytes.data());
  DeleteEnhMetaFile(metafile);
  return n == bytes.size() && save_bytes(path.c_str(), bytes.data(), bytes.size());
}

bool print_pages(HDC printer, const char* title, int pages, const std::function<void(int page, CDC&)>& draw,
                 const std::function<void(int page)>& before) {
  const std::wstring name = wide_of(title);
  DOCINFOW document = {};
  document.cbSize = sizeof document;
  document.lpszDocName = name.c_str();
  if (StartDocW(printer, &document) <= 0) return false;
  for (int page = 0; page < pages; ++page) {
    if (before) before(page);
    if (StartPage(printer) <= 0) return AbortDoc(printer), false;
    {
      GdiContext context(printer);
      draw(page, context);
    }
    if (EndPage(printer) <= 0) return AbortDoc(printer), false;
  }
  return EndDoc(printer) > 0;
}

}  // namespace qv
