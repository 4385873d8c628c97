#include "qvtools/scripts/script.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <numbers>

#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr char kOpen[] = "%%%[QuillonScript%%%";
constexpr char kClose[] = "%%%QuillonScript]%%%";
constexpr double kDegrees = 180 / std::numbers::pi;

/// Writes numbers through a format, free of the locale. No command has more than six, of at most 48 characters each.
template <class... Numbers>
void write(std::FILE* f, const char* format, Numbers... numbers) {
  std::fputs(qv::FormattedText<512>(format, static_cast<double>(numbers)...), f);
}

void put(std::FILE* f, std::initializer_list<const char*> texts) {
  for (const char* text : texts) std::fputs(text, f);
}

void write_text_line(std::FILE* f, double x, double y, const char* text, double h, double degrees) {
  write(f, "text %.2f,%.2f %.2f %.2f ", x, y, h, degrees);
  put(f, {text, "\n"});
}

struct Line {
  float x1, y1, x2, y2;
};

/// Text at a step of a line, turned from the line's direction by `turn` degrees.
void write_at_line(std::FILE* f, const Line& at, int n, int i, const char* text, float h, int line, double turn) {
  const double angle = get_line_angle(at.x1, at.y1, at.x2, at.y2);
  const double along = i * static_cast<double>(get_dist(at.x1, at.y1, at.x2, at.y2)) / (n == 0 ? 1 : n);
  const double across = line * 1.2 * h + (line < 0 ? -0.2 : 0.2) * h;
  const double c = std::cos(angle), s = std::sin(angle);
  write_text_line(f, at.x1 + along * c - across * s, at.y1 + along * s + across * c, text, h, angle * kDegrees + turn);
}

}  // namespace

void acad_circle(std::FILE* f, float x, float y, float r) {
  write(f, "circle %.2f,%.2f %.2f\n", x, y, r);
}

void acad_line(std::FILE* f, float x1, float y1, float x2, float y2) {
  write(f, "line %.2f,%.2f %.2f,%.2f \n", x1, y1, x2, y2);
}

void acad_3dface(std::FILE* f, float x1, float y1, float x2, float y2, float x3, float y3) {
  write(f, "3dface %.2f,%.2f %.2f,%.2f %.2f,%.2f  \n", x1, y1, x2, y2, x3, y3);
}

void acad_pline(std::FILE* f, float x1, float y1, float x2, float y2, float w) {
  write(f, "pline %.2f,%.2f w %.2f  %.2f,%.2f \n", x1, y1, w, x2, y2);
}

void acad_pline_mut_p(std::FILE* f, int n, const float* x, const float* y, float w) {
  if (n < 1) return;
  write(f, "pline %.2f,%.2f w %.2f  ", x[0], y[0], w);
  for (int i = 1; i < n; ++i) write(f, "%.2f,%.2f ", x[i], y[i]);
  std::fputs("\n", f);
}

void acad_arc(std::FILE* f, float cx, float cy, float x1, float y1, float x2, float y2) {
  write(f, "arc c %.2f,%.2f %.2f,%.2f %.2f,%.2f\n", cx, cy, x1, y1, x2, y2);
}

void acad_text(std::FILE* f, float x, float y, const char* text, float h) {
  write(f, "text %.2f,%.2f %.3f %.2f ", x, y, h, 0.0);
  put(f, {text, "\n"});
}

void acad_text_angle(std::FILE* f, float x, float y, const char* text, float h, float angle) {
  write_text_line(f, x, y, text, h, angle);
}

void acad_text_along_line(std::FILE* f, float x1, float y1, float x2, float y2, int n, int i, const char* text, float h,
                          int line) {
  write_at_line(f, {x1, y1, x2, y2}, n, i, text, h, line, 0);
}

void acad_text_vertical_line(std::FILE* f, float x1, float y1, float x2, float y2, int n, int i, const char* text,
                             float h, int line) {
  write_at_line(f, {x1, y1, x2, y2}, n, i, text, h, line, 90);
}

void acad_text_along_arc(std::FILE* f, float cx, float cy, float x1, float y1, float x2, float y2, int n, int i,
                         const char* text, float h, float line) {
  const double from = get_line_angle(cx, cy, x1, y1), to = get_line_angle(cx, cy, x2, y2);
  const double sweep = to < from ? to - from + 2 * std::numbers::pi : to - from;
  const double angle = from + i * sweep / (n == 0 ? 1 : n);
  const double radius = get_dist(cx, cy, x1, y1) - line * 1.2 * h + (line >= 0 ? -0.2 : 0.2) * h;
  const double back = static_cast<double>(std::strlen(text)) * 0.75 * h / 2;
  const double c = std::cos(angle), s = std::sin(angle);
  acad_text_angle(f, static_cast<float>(cx + radius * c + back * s), static_cast<float>(cy + radius * s - back * c),
                  text, h, static_cast<float>(angle * kDegrees + 90));
}

void acad_layer(std::FILE* f, const char* option, const char* argument) {
  put(f, {"layer ", option, " ", argument, " \n"});
}

void acad_color(std::FILE* f, const char* color) {
  put(f, {"color ", color, "\n"});
}

void acad_zoom(std::FILE* f, const char* argument) {
  put(f, {"zoom ", argument, "\n"});
}

int QuillonScript(std::FILE* f, const char* text) {
  put(f, {"\n", kOpen, text, kClose, "\n"});
  return 1;
}

int QuillonScript_Text(std::FILE* f, const char* text, unsigned long style, float h) {
  if (!f) return 0;
  const qv::FormattedText<96> head("TextStyle=%11d %9.3f", static_cast<int>(style), static_cast<double>(h));
  put(f, {kOpen, head.text, text, kClose});
  return 1;
}

int ColorText(std::FILE* f, const char* text, int flag) {
  QuillonScript_Text(f, text, flag != 0 ? 0 : 255, 1.0f);
  return 1;
}
