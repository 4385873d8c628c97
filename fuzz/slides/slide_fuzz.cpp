// Slides and slide libraries of any bytes: read, measure, draw, convert. The first byte chooses which.

#include "../harness.h"
#include "../memory_file.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/slides/slide_library.h"

namespace {

void use(CWxSlide& slide) {
  static qv::BitmapContext bitmap(64, 64, 0);
  const CRect place(0, 0, 64, 64);
  slide.Draw(&bitmap, &place);
  DXF dxf;
  dxf.New_MemDxf();
  Form_Dxf(&dxf, &slide);
  if (dxf.m_EntityList.GetCount() > static_cast<int>(slide.m_Items.size())) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static qvfuzz::QuietHost host;
  qv::SetHost(&host);
  if (size == 0) return 0;
  const MemoryFile file(data + 1, size - 1);
  if (!file.good()) return 0;
  CWxSlide slide;
  if ((data[0] & 1) == 0) {
    if (slide.Read_SLD(file.path().c_str())) use(slide);
    return 0;
  }
  CWxSlideLib library;
  if (!library.Open_SLB(file.path().c_str())) return 0;
  for (int i = 0; i < library.m_nCount && i < 16; ++i) library.Read_SLD(i, &slide);
  library.Read_SLD("DOOR", &slide);
  if (library.m_nCount < 16) library.SLB2SLD(qvfuzz::scratch().prefix().c_str());
  use(slide);
  // By a name that holds the library's.
  const std::string copy = qvfuzz::scratch().write("named.slb", {reinterpret_cast<const char*>(data + 1), size - 1});
  library.Read_SLB_SLD((copy.substr(0, copy.size() - 4) + ".first").c_str(), &slide);
  return 0;
}
