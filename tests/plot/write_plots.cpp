// Writes one drawing of known marks in every format, for files_test.py: write_plots FOLDER. What the marks measure is
// stated there.

#include <numbers>

#include "qvtools/plot/internal/canvas.h"

using namespace qv::detail;

namespace {

Stroke pen(double width, Ink ink = {}) {
  return {width, ink, Stroke::Ends::Round, Stroke::Joins::Round};
}

Path line(PathPoint a, PathPoint b) {
  Path path;
  path.move_to(a);
  path.line_to(b);
  return path;
}

Path rectangle(double left, double bottom, double width, double height) {
  Path path;
  path.move_to({left, bottom});
  path.line_to({left + width, bottom});
  path.line_to({left + width, bottom + height});
  path.line_to({left, bottom + height});
  path.line_to({left, bottom});
  return path;
}

void draw_texts(Canvas& canvas) {
  canvas.text(
      {"\xE6\xA2\x81\xE9\x85\x8D\xE7\xAD\x8B 3\xCE\xA6"
       "25@200 C30",
       {200, 400},
       5,
       0,
       62.5});
  canvas.text({"KL-3(2A)", {100, 300}, 3.5, std::numbers::pi / 2, 20});
  canvas.text({"\xF0\xA0\xAE\xB7<&>\"\x01\nx", {300, 300}, 7, 0, 40});
  canvas.text({"\x02\x03", {300, 320}, 7, 0, 40});
}

void draw(Canvas& canvas, double width, double height) {
  const int axis = canvas.add_layer({"AXIS", true});
  const int beams = canvas.add_layer({"\xE6\xA2\x81 <\"&\">", true});
  const int hidden = canvas.add_layer({"hidden", false});
  int figure = -1;
  if (canvas.keeps_figures()) {
    figure = canvas.begin_figure();
    canvas.stroke(rectangle(0, 0, 10, 10), pen(0.5));
    canvas.end_figure();
  }
  canvas.begin_page({width, height, "a.dxf", "S-1"});
  canvas.set_layer(axis);
  canvas.stroke(line({50, 100}, {1150.005, 100}), pen(0.7));
  canvas.stroke(line({1150.005, 100}, {1150, 800}), pen(0.7));  // goes on
  canvas.set_layer(beams);
  Path circle;
  circle.move_to({1000, 400});
  circle.arc_to({1000, 400}, {600, 400}, 2 * std::numbers::pi);
  canvas.stroke(circle, pen(0.18, {255, 0, 0}));
  canvas.stroke(line({300, 150}, {310, 150}), {4, {}, Stroke::Ends::Butt, Stroke::Joins::Round});
  Path hole = rectangle(300, 200, 40, 40);
  const Path inner = rectangle(310, 210, 20, 20);
  for (const Path::Piece& p : inner.pieces()) {
    p.kind == Path::Kind::Move ? hole.move_to(p.to)
                               : hole.line_to({p.to.y + 100, p.to.x - 100});  // the other way round
  }
  canvas.fill(hole, {0, 0, 255});
  canvas.set_layer(hidden);
  canvas.fill(rectangle(10, 10, 20, 20), {});
  canvas.set_layer(-1);
  draw_texts(canvas);
  canvas.place(figure, {400.005, 200});
  canvas.end_page();
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  const std::string folder = std::string(words[1]) + '/';
  CanvasOptions options;
  options.title = "\xE6\xA2\x81 (1)";
  options.readable = true;
  options.dpi = 50.8;
  const auto pdf = pdf_canvas(folder + "plot.pdf", options);
  if (!pdf) return 1;
  draw(*pdf, 1189, 841);
  pdf->begin_page({210, 297, "b.dxf", ""});
  pdf->set_layer(pdf->add_layer({"AXIS", true}));  // the one of the first page
  pdf->stroke(line({10, 10}, {20, 20}), pen(0.35));
  pdf->end_page();
  const auto svg = svg_canvas(folder + "plot.svg", options);
  if (!svg) return 1;
  draw(*svg, 1189, 841);
  const auto png = png_canvas(folder + "plot.png", options);
  if (!png) return 1;
  draw(*png, 1189, 841);
  options.smooth = true;
  const auto smooth = png_canvas(folder + "smooth.png", options);
  if (!smooth) return 1;
  draw(*smooth, 1189, 841);
  return pdf->finish() && svg->finish() && png->finish() && smooth->finish() ? 0 : 1;
}
