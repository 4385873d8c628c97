#include "qvtools/plot/internal/pdf_marks.h"

namespace qv::detail {
namespace {

// A path that grows without end is slow to draw for some readers.
constexpr std::int64_t kLongestPath = 250;

// An arc of the sweep s and the radius r as one Bezier curve is off by r s^6 / 55000 at most.
constexpr double kCurveError = 0.001;
constexpr double kSixthPowers = 55000;

double widest_curve(double radius) {
  return std::min(std::pow(kCurveError * kSixthPowers / std::max(radius, 1e-3), 1.0 / 6), std::numbers::pi / 2);
}

}  // namespace

void PdfMarks::scale_page() {
  text_.real<8>(72 / 25.4);
  text_.put(" 0 0 ");
  text_.real<8>(72 / 25.4);
  text_.put(" 0 0 cm\n");
}

void PdfMarks::turn_to(Open open) {
  if (open == open_) return;
  if (open_ == Open::Strokes) text_.put("S\n");
  if (open_ == Open::Text) text_.put("ET\n");
  if (open == Open::Text) text_.put("BT\n");
  open_ = open;
}

void PdfMarks::enter_layer() {
  if (layer_ == entered_) return;
  turn_to(Open::Nothing);
  if (entered_ >= 0) text_.put("EMC\n");
  entered_ = layer_;
  if (layer_ < 0) return;
  layers_.insert(layer_);
  text_.put("/OC/L");
  text_.integer(layer_);
  text_.put(" BDC\n");
}

void PdfMarks::color(Ink ink, std::string_view gray, std::string_view rgb) {
  const auto part = [this](unsigned char value) {
    text_.real<3>(value / 255.0);
    text_.put(' ');
  };
  part(ink.red);
  if (ink.red == ink.green && ink.red == ink.blue) return text_.put(gray);
  part(ink.green);
  part(ink.blue);
  text_.put(rgb);
}

void PdfMarks::choose_pen(const Stroke& stroke) {
  if (knows_pen_ && stroke == pen_) return;
  turn_to(Open::Nothing);
  if (!knows_pen_ || !(stroke.ink == pen_.ink)) color(stroke.ink, "G\n", "RG\n");
  if (!knows_pen_ || stroke.width != pen_.width) {
    text_.number<2>(std::max(hundredths(stroke.width), 1));
    text_.put(" w\n");
  }
  if (!knows_pen_ || stroke.ends != pen_.ends) text_.put(stroke.ends == Stroke::Ends::Round ? "1 J\n" : "0 J\n");
  if (!knows_pen_ || stroke.joins != pen_.joins) text_.put(stroke.joins == Stroke::Joins::Round ? "1 j\n" : "0 j\n");
  pen_ = stroke;
  knows_pen_ = true;
}

void PdfMarks::stroke(const Path& path, const Stroke& stroke) {
  enter_layer();
  choose_pen(stroke);
  if (open_ != Open::Strokes || walk_.told() - path_from_ > kLongestPath) {
    turn_to(Open::Nothing);
    walk_.restart();
    path_from_ = walk_.told();
  }
  turn_to(Open::Strokes);
  // Where two strokes meet, a round join looks as two round ends do.
  walk_.stroke(path, stroke.ends == Stroke::Ends::Round && stroke.joins == Stroke::Joins::Round);
  if (walk_.told() == path_from_) open_ = Open::Nothing;
}

void PdfMarks::fill(const Path& path, Ink ink) {
  enter_layer();
  turn_to(Open::Nothing);
  if (!knows_filling_ || !(ink == filling_)) color(ink, "g\n", "rg\n");
  filling_ = ink;
  knows_filling_ = true;
  walk_.restart();
  const std::int64_t before = walk_.told();
  walk_.fill(path);
  if (walk_.told() != before) text_.put("f\n");
}

void PdfMarks::arc(PathPoint from, const Path::Piece& arc) {
  const ArcPieces pieces(from, arc, widest_curve(distance(from, arc.center)));
  const double reach = 4.0 / 3 * std::tan(pieces.step() / 4);
  for (int i = 0; i < pieces.count(); ++i) {
    const PathPoint a = pieces.point(i), b = pieces.point(i + 1);
    put_point(on_grid(pieces.along(a, reach)));
    put_point(on_grid(pieces.along(b, -reach)));
    point(on_grid(b), "c\n");
  }
}

void PdfMarks::found_text(const FoundText& text) {
  const std::u32string letters = found_letters(text.text);
  if (letters.empty()) return;
  double natural = 0;  // the length of the text at the font's own widths, in heights
  for (const char32_t c : letters) natural += FoundFont::width(c);
  const std::int64_t size = std::max(hundredths(text.height), 1);
  const double length = natural * static_cast<double>(size) / 100;
  const std::int64_t stretch =
      text.advance > 0 ? std::max<std::int64_t>(in_parts(text.advance / length, 10000), 1) : 10000;

  enter_layer();
  turn_to(Open::Text);
  if (size != font_size_) {
    text_.put(has_text_ ? "/T " : "3 Tr/T ");
    text_.number<2>(size);
    text_.put(" Tf\n");
  }
  if (stretch != stretch_) {
    text_.number<2>(stretch);
    text_.put(" Tz\n");
  }
  font_size_ = size;
  stretch_ = stretch;
  has_text_ = true;
  const double c = std::cos(text.angle), s = std::sin(text.angle);
  for (const double part : {c, s, -s, c}) {
    text_.real<5>(part);
    text_.put(' ');
  }
  point(on_grid(text.at), "Tm<");
  std::string codes;
  for (const char32_t letter : letters) append_utf16_digits(static_cast<char32_t>(font_.code(letter)), codes);
  text_.put(codes);
  text_.put(">Tj\n");
}

void PdfMarks::place(int figure, PathPoint by) {
  enter_layer();
  turn_to(Open::Nothing);
  figures_.insert(figure);
  text_.put("q 1 0 0 1 ");
  // Half of a hundredth more or less would add to that of the figure's own points.
  text_.real<4>(by.x);
  text_.put(' ');
  text_.real<4>(by.y);
  text_.put(" cm/F");
  text_.integer(figure);
  text_.put(" Do Q\n");
}

void PdfMarks::end() {
  layer_ = -1;
  enter_layer();
  turn_to(Open::Nothing);
  text_.flush();
}

}  // namespace qv::detail
