// Calls of the composer by any bytes, in memory and streamed at once: the same file by both ways, again when it was
// read and saved, and when the drawing was inserted into an empty one.

#include <cstring>

#include "qvtools/drawing/base_sgt.h"
#include "scratch_file.h"

namespace {

using qvfuzz::require;
using qvfuzz::saved;

/// The bytes as numbers of calls and arguments.
class Script {
 public:
  Script(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
  bool is_left() const { return at_ != end_; }
  int byte() { return at_ != end_ ? *at_++ : 0; }
  /// A float that two decimals hold.
  float number() { return static_cast<float>((byte() - 128) * 256 + byte()) / 8; }
  const char* text() {
    int n = byte() % 20;
    for (char& c : text_) c = n-- > 0 ? static_cast<char>(std::max(byte(), 32)) : '\0';
    return text_;
  }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
  char text_[24];
};

void compose(CBase_SGT& sheet, Script script) {
  for (int calls = 0; script.is_left() && calls < 500; ++calls) {
    const int call = script.byte() % 12;
    const float a = script.number(), b = script.number(), c = script.number(), d = script.number();
    const float x[] = {a, b, c, d, a}, y[] = {d, c, b, a, b};
    float px[] = {a, b, c}, py[] = {d, c, b}, width[] = {1, 0, 2};
    const float bulge[] = {0, 0.5F, 0};
    const CBase_SGT::CLiangZongJin bars[] = {{script.byte() % 9, 2, 25, 1}, {2, 2, 20, -1}};
    switch (call) {
      case 0:
        sheet.Draw_Line(a, b, c, d);
        break;
      case 1:
        sheet.Draw_Circle(a, b, c);
        break;
      case 2:
        sheet.Draw_Arc(a, b, c, d, a);
        break;
      case 3:
        sheet.Draw_Text(a, b, c, d, script.text());
        break;
      case 4:
        sheet.Draw_Pline(3, px, py, bulge, script.byte() & 1, width, width);
        break;
      case 5:
        sheet.Draw_Solid(a, b, c, d, b, c, d, a);
        break;
      case 6:
        sheet.Draw_3DFace(a, b, c, d, b, c, d, a);
        break;
      case 7:
        sheet.Draw_Point(a, b);
        break;
      case 8:
        sheet.Draw_Dim_Points(5, x, y, 0, 1, 1);
        break;
      case 9:
        sheet.Draw_Liang_Section(a, b, c, d, 25, 2, bars, {1, 8, 100, 2}, 1);
        break;
      case 10:
        sheet.Draw_Axis(a, b, 0, 10, 0, 10, c, d, 4, 4, "x", script.text());
        break;
      default:
        sheet.SetCurLType(script.byte() & 1 ? "DASHED" : "BYLAYER");
        break;
    }
  }
}

void add_tables(CBase_SGT& sheet) {
  sheet.Add_STyle("HZ", "txt", "hztxt");
  sheet.Add_Default_LineType();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qvfuzz::prepare_host();
  CBase_SGT sheet;
  require(sheet.New_MemDxf() == 1);
  add_tables(sheet);
  compose(sheet, {data, size});
  const std::string bytes = saved(sheet, "saved.dxf");

  CBase_SGT streamed;
  require(streamed.New(qvfuzz::scratch().path("streamed.dxf").c_str()) == 1);
  add_tables(streamed);
  require(streamed.Write_Tables() && streamed.Begin_AllBlocks() && streamed.End_AllBlocks() && streamed.Begin_Entity());
  compose(streamed, {data, size});
  require(streamed.Close() == 1);
  require(qvfuzz::scratch().read("streamed.dxf") == bytes);

  DXF read;
  read.New_MemDxf();
  require(read.Read_FileDxf_To_Mem(qvfuzz::scratch().path("streamed.dxf").c_str()) == 1 && read.IsComplete());
  require(saved(read, "saved.dxf") == bytes);
  DXF empty;
  empty.New_MemDxf();
  require(empty.InsertDxf(&read, 0, 0, 0) == 1);
  require(saved(empty, "saved.dxf") == bytes);
  return 0;
}
