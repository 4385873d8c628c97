// Any bytes as a field: loaded, asked, painted and saved. The locator answers as the field does.

#include "../harness.h"
#include "../memory_file.h"
#include "qvtools/engineering/field.h"
#include "qvtools/engineering/field_locator.h"
#include "qvtools/system/textfile.h"

namespace {

using qvfuzz::require;

/// A page that sees every pixel that the picture hands on.
class CheckingContext : public CDC {
 public:
  static constexpr int kWidth = 20;
  static constexpr int kHeight = 30;

  void MoveTo(int, int) override {}
  void LineTo(int, int) override {}
  void SetPixel(int x, int y, COLORREF) override { require(x >= 0 && x <= kWidth && y >= 0 && y <= kHeight); }
  void FillRgn(const CRgn&, const CBrush&) override {}
  CSize GetResolution() const override { return {kWidth, kHeight}; }
};

void load(CChang& field, const std::string& path) {
  std::FILE* const file = qv::open_text(path.c_str(), "rt");
  require(field.LoadData(file) == 1);
  std::fclose(file);
}

void ask(const CChang& field) {
  const qv::FieldLocator locator(field);
  for (const float at : {0.0F, 0.5F, 3.0F, -1e9F}) {
    const float a = locator.Value(at, at), b = field.Get_Value(at, at);
    require(a == b || (a != a && b != b));
    require(locator.Contains(at, at) == field.PointInChang(at, at));
  }
}

void paint(CChang& field) {
  CheckingContext page;
  CRect window(0, 0, CheckingContext::kWidth, CheckingContext::kHeight);
  CFCoor coor(CFPoint(-500, 2500), 0.01F, 1);
  field.Draw_CaiSeTu(&page, &window, &coor);
}

void save_and_load(const CChang& field) {
  const MemoryFile copy(nullptr, 0);
  std::FILE* const file = qv::open_text(copy.path().c_str(), "wt");
  require(field.SaveData(file) == 1);
  std::fclose(file);
  CChang again;
  load(again, copy.path());
  require(again.m_Nodes.GetSize() == field.m_Nodes.GetSize() && again.m_Tris.GetSize() == field.m_Tris.GetSize());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile memory(data, size);
  if (!memory.good()) return 0;
  CChang field;
  load(field, memory.path());
  field.m_nValueIndex = static_cast<int>(size % 7) - 1;
  ask(field);
  paint(field);
  save_and_load(field);
  return 0;
}
