// Dimensions: by their block where they have one, else from their points and style.

#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/dimension_style.h"
#include "qvtools/import/internal/paragraphs.h"

namespace qv::importing {

namespace {

constexpr double kNear = 1e-9;  // of a size: what is no length

Vec level(const Vec& p) {
  return {p.x, p.y, 0};
}
Vec left_of(const Vec& v) {
  return {-v.y, v.x, 0};
}

/// Draws a dimension in its own plane.
class DimensionDrawing {
 public:
  DimensionDrawing(Job& job, const Record& record)
      : job_(job), record_(record), style_(job, record), frame_(frame_of(job, record)) {
    // Points of the world, seen in the dimension's plane.
    if (record.has(210)) {
      const Matrix own = extrusion_frame(record.point(210));
      inverse_ = {{own.x.x, own.y.x, own.z.x}, {own.x.y, own.y.y, own.z.y}, {own.x.z, own.y.z, own.z.z}, {}};
    }
    frame_ = frame_ * translation({0, 0, seen(13).z});
  }

  bool draw(int type);

 private:
  Vec seen(int code) const { return inverse_(record_.point(code)); }
  Vec at(int code) const { return level(seen(code)); }

  bool linear(bool aligned);
  bool angular(const Vec& center, const Vec& first, const Vec& second, const Vec& through, bool ofLength);
  bool between_lines();
  bool radial(bool diameter);
  bool ordinate();

  bool line(const Vec& a, const Vec& b) { return job_.out.line(frame_(a), frame_(b)); }
  bool arrow(DimensionStyle::End end, const Vec& tip, const Vec& direction) {
    return put_arrow(job_, frame_, style_.arrow_of(end), tip, direction);
  }
  /// From a measured point to the dimension line and a little beyond.
  bool extension(const Vec& from, const Vec& to);
  /// A line that leaves room for the text that stands on it.
  bool line_around_text(const Vec& a, const Vec& b);
  /// The text about its middle; `turn` is the dimension line's.
  void place_text(const std::u32string& measured, const Vec& usual, double turn);
  bool put_text_block() { return !hasText_ || put_block(job_, frame_ * translation(middle_) * turning(turn_), text_); }

  Job& job_;
  const Record& record_;
  DimensionStyle style_;
  Matrix frame_;
  Matrix inverse_;
  TextBlock text_;
  TextSize size_;
  Vec middle_;
  double turn_ = 0;
  bool hasText_ = false;
};

bool DimensionDrawing::extension(const Vec& from, const Vec& to) {
  const Vec step = to - from;
  const double n = length(step);
  if (n <= style_.extensionGap() + kNear * length(to)) return true;
  const Vec along = step * (1 / n);
  return line(from + along * style_.extensionGap(), to + along * style_.extensionBeyond());
}

void DimensionDrawing::place_text(const std::u32string& measured, const Vec& usual, double turn) {
  std::u32string text = job_.file.decoder.points(record_.text(1));
  if (text == U" ") return;
  if (const std::size_t at = text.find(U"<>"); at != std::u32string::npos) text.replace(at, 2, measured);
  if (text.empty()) text = measured;
  hasText_ = true;
  text_.text = text;
  text_.format.height = style_.textHeight();
  text_.style = style_.textStyle();
  if (text_.style >= 0) text_.format.width = job_.file.styles[static_cast<std::size_t>(text_.style)].width;
  text_.attachment = 5;
  size_ = size_of_block(job_, text_);
  if (style_.levelText()) turn = 0;
  // Readable from below or from the right.
  turn = std::remainder(turn, 2 * kPi);
  if (turn > kPi / 2 + 1e-4) turn -= kPi;
  if (turn <= -kPi / 2 + 1e-4) turn += kPi;
  turn_ = record_.has(53) ? radians(record_.real(53)) : turn;
  const Vec given = level(record_.point(11));
  const double up = style_.textAbove() ? style_.gap() + size_.height / 2 : 0;
  middle_ = record_.has(11) && length(given) > 0 ? given : usual + Vec{-std::sin(turn_), std::cos(turn_), 0} * up;
}

bool DimensionDrawing::line_around_text(const Vec& a, const Vec& b) {
  const Vec along = unit(b - a, {1, 0, 0});
  const Vec to = middle_ - a;
  const double off = std::fabs(dot(to, left_of(along)));
  const double center = dot(to, along);
  const double whole = length(b - a);
  const double half =
      std::fabs(std::cos(turn_ - std::atan2(along.y, along.x))) > 0.7 ? size_.width / 2 : size_.height / 2;
  const double room = half + style_.gap();
  const bool crossed = hasText_ && off < size_.height / 2 && center + room > 0 && center - room < whole;
  if (!crossed) return line(a, b);
  bool good = true;
  if (center - room > 0) good = line(a, a + along * (center - room));
  if (center + room < whole) good = line(a + along * (center + room), b) && good;
  return good;
}

bool DimensionDrawing::linear(bool aligned) {
  const Vec first = at(13);
  const Vec second = at(14);
  const double turn = radians(record_.real(50));
  const Vec along = aligned ? unit(second - first, {1, 0, 0}) : Vec{std::cos(turn), std::sin(turn), 0};
  const Vec on = at(10);
  const Vec a = on + along * dot(first - on, along);
  const Vec b = on + along * dot(second - on, along);
  const double measure = record_.has(42) && record_.real(42) > 0 ? record_.real(42) : length(b - a);
  place_text(style_.length_text(measure * style_.lengthFactor()), middle(a, b), std::atan2(along.y, along.x));
  const Vec direction = unit(b - a, along);
  // Arrows that have no room between the extension lines stand outside them.
  const bool inside = style_.tick() > 0 || length(b - a) > 3 * style_.arrow();
  const Vec outward = direction * (inside ? 1 : -1);
  bool good = extension(first, a) && extension(second, b) && line_around_text(a, b);
  good = arrow(DimensionStyle::First, a, outward * -1) && arrow(DimensionStyle::Second, b, outward) && good;
  if (!inside) {
    const double tail = 2 * style_.arrow();
    good = line(a - direction * tail, a) && line(b, b + direction * tail) && good;
  }
  return put_text_block() && good;
}

bool DimensionDrawing::angular(const Vec& center, const Vec& first, const Vec& second, const Vec& through,
                               bool ofLength) {
  const double radius = length(through - center);
  const auto angle = [&](const Vec& p) { return std::atan2(p.y - center.y, p.x - center.x); };
  const auto ahead = [](double from, double to) {
    const double a = std::fmod(to - from, 2 * kPi);
    return a < 0 ? a + 2 * kPi : a;
  };
  double start = angle(first);
  double sweep = ahead(start, angle(second));
  // The arc is the one that runs through the given point.
  if (ahead(start, angle(through)) > sweep) {
    start = angle(second);
    sweep = 2 * kPi - sweep;
  }
  const auto point = [&](double a, double r) { return center + Vec{std::cos(a), std::sin(a), 0} * r; };
  const double mid = start + sweep / 2;
  const double measure = record_.has(42) && record_.real(42) > 0 ? record_.real(42)
                         : ofLength                              ? sweep * length(first - center)
                                                                 : sweep;
  place_text(ofLength ? U"\u2312" + style_.length_text(measure * style_.lengthFactor()) : style_.angle_text(measure),
             point(mid, radius), mid - kPi / 2);
  bool good = extension(first, point(angle(first), radius)) && extension(second, point(angle(second), radius));
  // Room for the text on the arc.
  const double half = hasText_ && radius > 0 && std::fabs(length(middle_ - center) - radius) < size_.height / 2
                          ? (size_.width / 2 + style_.gap()) / radius
                          : 0;
  const double text = ahead(start, angle(middle_));
  if (half > 0 && text < sweep && text - half > 0 && text + half < sweep) {
    good = put_arc(job_, frame_, center, radius, start, text - half) &&
           put_arc(job_, frame_, center, radius, start + text + half, sweep - text - half) && good;
  } else {
    good = put_arc(job_, frame_, center, radius, start, sweep) && good;
  }
  const double lead = radius > 0 ? style_.arrow() / radius / 2 : 0;  // an arrow's chord
  const auto tangent = [&](double a) { return Vec{-std::sin(a), std::cos(a), 0}; };
  good = arrow(DimensionStyle::First, point(start, radius), tangent(start + lead) * -1) && good;
  good = arrow(DimensionStyle::Second, point(start + sweep, radius), tangent(start + sweep - lead)) && good;
  return put_text_block() && good;
}

bool DimensionDrawing::between_lines() {
  const Vec a = at(13);
  const Vec b = at(14);
  const Vec c = at(10);
  const Vec d = at(15);
  const Vec through = level(record_.point(16));
  const Vec u = b - a;
  const Vec v = d - c;
  const double turn = u.x * v.y - u.y * v.x;
  if (!(std::fabs(turn) > 1e-12 * length(u) * length(v))) return line(a, b);  // lines that never meet
  const Vec center = a + u * (((c.x - a.x) * v.y - (c.y - a.y) * v.x) / turn);
  // Of each line the place nearest to the arc, on the arc's side.
  const double radius = length(through - center);
  const auto end = [&](const Vec& p, const Vec& q) {
    const Vec along = unit(q - p, {1, 0, 0});
    const double side = dot(through - center, along) < 0 ? -1 : 1;
    const double one = side * dot(p - center, along);
    const double other = side * dot(q - center, along);
    const double low = std::max(0.0, std::min(one, other));
    const double high = std::max(one, other);
    return center + along * (side * std::clamp(radius, low, std::max(high, kNear * radius)));
  };
  return angular(center, end(a, b), end(c, d), through, false);
}

bool DimensionDrawing::radial(bool diameter) {
  const Vec start = at(10);
  const Vec on = at(15);
  const Vec along = unit(on - start, {1, 0, 0});
  const double measure = record_.has(42) && record_.real(42) > 0 ? record_.real(42) : length(on - start);
  const std::u32string sign = diameter ? std::u32string(1, special_sign('c')) : U"R";
  place_text(sign + style_.length_text(measure * style_.lengthFactor()), middle(start, on),
             std::atan2(along.y, along.x));
  // Out to a text that stands beyond the arc.
  const double reach = hasText_ ? dot(middle_ - on, along) - size_.width / 2 - style_.gap() : 0;
  bool good = reach > 0 ? line(start, on + along * reach) : line_around_text(start, on);
  good = arrow(DimensionStyle::Second, on, along) && good;
  if (diameter) good = arrow(DimensionStyle::First, start, along * -1) && good;
  return put_text_block() && good;
}

bool DimensionDrawing::ordinate() {
  const Vec origin = at(10);
  const Vec feature = at(13);
  const Vec end = at(14);
  const bool ofX = (record_.integer(70) & 64) != 0;
  const double measure =
      record_.has(42) ? std::fabs(record_.real(42)) : std::fabs(ofX ? feature.x - origin.x : feature.y - origin.y);
  const Vec along = ofX ? Vec{0, end.y < feature.y ? -1.0 : 1.0, 0} : Vec{end.x < feature.x ? -1.0 : 1.0, 0, 0};
  place_text(style_.length_text(measure * style_.lengthFactor()), end, std::atan2(along.y, along.x));
  if (!record_.has(11) || length(level(record_.point(11))) == 0)
    middle_ = end + along * (style_.gap() + size_.width / 2);
  // Away from the feature, across to the end's own line, and on.
  const Vec start = feature + along * style_.extensionGap();
  const double run = dot(end - start, along);
  const double knee = std::max(run - 2 * style_.arrow(), run / 2);
  const Vec a = start + along * (knee > 0 ? knee / 2 : 0);
  const Vec b = end - along * (knee > 0 ? knee / 2 : 0);
  const bool straight = length(cross(end - start, along)) < 1e-9;
  const bool good = straight ? line(start, end) : line(start, a) && line(a, b) && line(b, end);
  return put_text_block() && good;
}

bool DimensionDrawing::draw(int type) {
  switch (type) {
    case 0:
    case 1:
      return linear(type == 1);
    case 2:
      return between_lines();
    case 3:
    case 4:
      return radial(type == 3);
    case 5:
    case 8:
      return angular(at(15), at(13), at(14), at(10), type == 8);
    case 6:
      return ordinate();
    default:
      return false;
  }
}

}  // namespace

Outcome convert_dimension(Job& job, const Record& record) {
  constexpr int kTypes = 15;
  // Those that hold a sketch in place are not part of the drawing.
  if (record.word(8) == "ADSK_CONSTRAINTS" || record.word(8) == "*ADSK_CONSTRAINTS")
    return left_out("a constraint of a sketch");
  const int block = record.word(2).empty() ? -1 : job.file.blockNames.find(record.word(2), job.file.decoder);
  if (block >= 0 && job.file.blocks[static_cast<std::size_t>(block)].entities > 0)
    return put_block_entities(job, block, frame_of(job, record) * translation(record.point(12)));
  const int type = record.name == "ARC_DIMENSION"            ? 8
                   : record.name == "LARGE_RADIAL_DIMENSION" ? 4
                                                             : record.integer(70) & kTypes;
  if (type > 8 || type == 7) return left_out("a type that is not known");
  return outcome(DimensionDrawing(job, record).draw(type), converted("LINE, ARC, SOLID and TEXT"));
}

}  // namespace qv::importing
